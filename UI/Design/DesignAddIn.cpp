#include "Server/AddInMgr/IUIAddIn.h"
#include "UI/Design/DocumentKinds.h"
#include "UI/Design/OpenCmds.h"
#include "UI/Design/PrimitiveCmds.h"

namespace Vu::Design {
namespace {

/// The design add-in's root object: its types and its commands, in the order in which the host lists them.
class DesignAddIn : public Vs::IUIAddIn
{
public:
    DesignAddIn() : Vs::IUIAddIn(L"Design") {}

private:
    DocumentKinds m_documentKinds;

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
