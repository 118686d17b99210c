#include "Server/AddInMgr/IUIAddIn.h"
#include "Server/Base/Warning.h"
#include "UI/Base/Workspace/MenuBar.h"
#include "UI/Base/Workspace/ToolbarPersister.h"
#include "UI/Design/DocumentKinds.h"
#include "UI/Design/Edit/ColourCmd.h"
#include "UI/Design/Edit/PatternCmds.h"
#include "UI/Design/Edit/PlaceCmds.h"
#include "UI/Design/Edit/SolidCmds.h"
#include "UI/Design/EditComponentCmd.h"
#include "UI/Design/Environments.h"
#include "UI/Design/ExportDesignCmd.h"
#include "UI/Design/Localized.h"
#include "UI/Design/OpenCmds.h"
#include "UI/Design/Primitives/PrimitiveCmds.h"
#include "UI/Design/Resources.h"
#include "UI/Design/SeparateCmd.h"
#include "UI/Design/VisibilityCmds.h"

namespace Vu::Design {
namespace {

/// The design add-in's root object: its types and its commands, in the order in which the host lists them.
class DesignAddIn : public Vs::IUIAddIn
{
public:
    DesignAddIn() : Vs::IUIAddIn(L"Design") {}

    // As with the commands' own toolbars: without them the commands still work.
    void load() override
    {
        Vs::Status status;
        ToolbarPersister::get()->loadToolbars(Resources::ToolbarXml()->localPath(), kDomain, status);
        if (status.isError())
            Vs::warn(status.toString());
        MenuBar::get()->addFile(Resources::MenusXml()->localPath(), kDomain);
    }

private:
    DocumentKinds m_documentKinds;
    Environments m_environments;

    VeloraOpenDocumentCmdDef m_openDocumentCmdDef;
    VeloraImportCmdDef m_importCmdDef;
    VeloraExportCmdDef m_exportCmdDef;
    BoxCmdDef m_boxCmdDef;
    CylinderCmdDef m_cylinderCmdDef;
    SphereCmdDef m_sphereCmdDef;
    ConeCmdDef m_coneCmdDef;
    TorusCmdDef m_torusCmdDef;

    EditCmdDef<MoveCmd> m_moveCmdDef;
    EditCmdDef<RotateCmd> m_rotateCmdDef;
    EditCmdDef<CopyCmd> m_copyCmdDef;
    HideCmdDef m_hideCmdDef;
    ShowCmdDef m_showCmdDef;
    ShowAllCmdDef m_showAllCmdDef;
    ToggleVisibilityCmdDef m_toggleVisibilityCmdDef;
    EditCmdDef<JoinCmd> m_joinCmdDef;
    EditCmdDef<SubtractCmd> m_subtractCmdDef;
    EditCmdDef<IntersectCmd> m_intersectCmdDef;
    EditCmdDef<FilletCmd> m_filletCmdDef;
    EditCmdDef<ChamferCmd> m_chamferCmdDef;
    EditCmdDef<MirrorCmd> m_mirrorCmdDef;
    EditCmdDef<LinearPatternCmd> m_linearPatternCmdDef;
    EditCmdDef<CircularPatternCmd> m_circularPatternCmdDef;
    SeparateCmdDef m_separateCmdDef;
    EditCmdDef<ColourCmd> m_colourCmdDef;
    EditComponentCmdDef m_editComponentCmdDef;
    EditByDoubleClick m_editByDoubleClick;
};

} // namespace
} // namespace Vu::Design

/// The library's only export.
extern "C" Vs::IAddIn* GetIAddIn()
{
    static Vu::Design::DesignAddIn addIn;
    return &addIn;
}
