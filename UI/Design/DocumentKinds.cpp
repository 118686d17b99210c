#include "UI/Design/DocumentKinds.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

namespace Vu::Design {
namespace {

// clang-format off
constexpr DocumentKindRow kDesign        = {"VeloraDocType", "Quillet Design", L".vlra", kDesignAssetType, "Design", &Resources::Design};
// These offer nothing that a design lacks yet, so the user isn't offered new ones; such files open, and lines
// create them.
constexpr DocumentKindRow kSimulation    = {"SimulationDocType", "Quillet Simulation", L".vlsim", "SimulationAssetType", "Simulation", &Resources::Simulation, {.hidden = true}};
constexpr DocumentKindRow kDocumentation = {"DocumentationDocType", "Quillet Documentation", L".vldoc", "DocumentationAssetType", "Documentation", &Resources::Documentation, {.hidden = true}};
// A document that other documents refer to: it comes with them, and is never created or opened on its own.
constexpr DocumentKindRow kTorvex        = {"TorvexDocumentType", "Quillet Torvex", L".vltx", "TorvexAssetType", "Torvex", nullptr, {.hidden = true}};
// clang-format on

} // namespace

DocumentKind::PicturedAssetType::PicturedAssetType(const DocumentKindRow& row)
    : Implements(row.assetType, localized(row.assetType, row.assetName), row.documentType, row.traits),
      m_icon(row.icon)
{
}

DocumentKind::DocumentKind(const DocumentKindRow& row)
    : m_documentType(row.documentType, localized(row.documentType, row.documentName), row.extension),
      m_assetType(row)
{
    Vs::require(Vs::DocumentMgr::get()->registerDocumentType(&m_documentType),
                "a kind of documents is registered once");
    Vs::require(Vs::AssetTypeMgr::get()->registerType(&m_assetType), "a kind of assets is registered once");
}

DocumentKind::~DocumentKind()
{
    Vs::AssetTypeMgr::get()->unregisterType(&m_assetType);
    Vs::DocumentMgr::get()->unregisterDocumentType(&m_documentType);
}

DocumentKinds::DocumentKinds()
    : m_design(kDesign), m_simulation(kSimulation), m_documentation(kDocumentation), m_torvex(kTorvex)
{
}

} // namespace Vu::Design
