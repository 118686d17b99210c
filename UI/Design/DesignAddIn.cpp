#include "Server/AddInMgr/IUIAddIn.h"
#include "UI/Design/OpenCmds.h"
#include "UI/Design/PrimitiveCmds.h"
#include "UI/Design/VeloraTypes.h"

namespace Vu::Design {
namespace {

/// The design add-in's root object: its types and its commands, in the order in which the host lists them.
class DesignAddIn : public Vs::IUIAddIn
{
public:
    DesignAddIn() : Vs::IUIAddIn(L"Design") {}

private:
    VeloraDocType m_docType;
    VeloraAssetType m_assetType;

    VeloraOpenDocumentCmdDef m_openDocumentCmdDef;
    VeloraImportCmdDef m_importCmdDef;
    BoxCmdDef m_boxCmdDef;
    CylinderCmdDef m_cylinderCmdDef;
    SphereCmdDef m_sphereCmdDef;
};

} // namespace
} // namespace Vu::Design

/// The library's one export.
extern "C" Vs::IAddIn* GetIAddIn()
{
    static Vu::Design::DesignAddIn addIn;
    return &addIn;
}
