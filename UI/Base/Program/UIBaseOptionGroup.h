#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Base/Point2.h"

namespace Vu {

/// The user's options of the interface.
class UIBaseOptionGroup : public Vs::Implements<UIBaseOptionGroup, Vs::OptionGroup>
{
public:
    static UIBaseOptionGroup* get();

    Vs::Option<bool> analytics{*this, "analytics", false}; ///< Usage keys are sent.
    Vs::Option<bool> offlineWorkflowsDisabled{*this, "offlineWorkflowsDisabled", false}; ///< No local files.
    /// The upper left corner, in pixels of the whole desktop.
    Vs::Point2 debugDialogPos() const { return {m_debugDialogX(), m_debugDialogY()}; }
    void debugDialogPos(const Vs::Point2& corner);
    Vs::Option<bool> showDebugDialog{*this, "showDebugDialog", false};
    Vs::Option<bool> showDebugScriptWidget{*this, "showDebugScriptWidget", false};
    Vs::Option<bool> showValidationDialog{*this, "showValidationDialog", false};
    Vs::Option<bool> cameraPivotEnabled{*this, "cameraPivotEnabled", true};
    /// An orbit in passing makes what lies under the pointer the pivot. Only with `cameraPivotEnabled`.
    Vs::Option<bool> pivotUnderPointer{*this, "pivotUnderPointer", true};
    Vs::Option<bool> reverseZoomDirection{*this, "reverseZoomDirection", false};
    Vs::Option<bool> useContrainedOrbit{*this, "useContrainedOrbit", true};
    Vs::Option<bool> wantToShowBrowser{*this, "wantToShowBrowser", true};
    Vs::Option<bool> wantToShowDesignFeed{*this, "wantToShowDesignFeed", false};
    Vs::Option<bool> wantToShowProperties{*this, "wantToShowProperties", true};
    Vs::Option<bool> wantToShowScriptPanel{*this, "wantToShowScriptPanel", false};
    Vs::Option<bool> wantToShowTextCommands{*this, "wantToShowTextCommands", true};
    Vs::Option<bool> wantToShowCommandToolbar{*this, "wantToShowCommandToolbar", true};
    Vs::Option<bool> wantToShowNavigationToolbar{*this, "wantToShowNavigationToolbar", true};
    Vs::Option<bool> wantToShowOrbicon{*this, "wantToShowOrbicon", true};
    /// Identifiers of the toolbars that the user has taken from the window.
    Vs::Option<std::vector<std::wstring>> hiddenToolbars{*this, "hiddenToolbars", {}};
    Vs::Option<bool> animateCamera{*this, "animateCamera", true}; ///< Camera changes glide.
    /// Undo and redo bring back what was selected, and where the camera was.
    Vs::Option<bool> undoSelectionAndCamera{*this, "undoSelectionAndCamera", false};
    Vs::Option<std::wstring> lastDirectory{*this, "lastDirectory", L""};
    /// Of the window's texts: "en", "de", or "system" for that of the environment. Read at the start.
    Vs::Option<std::wstring> language{*this, "language", L"system"};
    Vs::Option<std::wstring> theme{*this, "theme", L"system"}; ///< "light", "dark" or "system".
    /// Place and size of the window when it was last closed, as the toolkit writes them.
    Vs::Option<std::wstring> windowGeometry{*this, "windowGeometry", L""};
    /// What the user has changed of the keys of commands: "FitCommand=F6; Ctrl+F6", or "FitCommand=" for
    /// none.
    Vs::Option<std::vector<std::wstring>> keys{*this, "keys", {}};
    Vs::Option<std::vector<std::wstring>> commandHistory{*this, "commandHistory", {}};

private:
    UIBaseOptionGroup() : Implements("UIBase") {}

    Vs::Option<int> m_debugDialogX{*this, "debugDialogX", 400};
    Vs::Option<int> m_debugDialogY{*this, "debugDialogY", 300};
};

} // namespace Vu
