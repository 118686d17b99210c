#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Workspace/ToolbarManager.h"

#include <string>

namespace Vu {

/// Reads toolbars from XML:
///
///     <toolbars>
///       <toolbar id="QATLeft" title="File" titleKey="ToolbarFile" contents="CommandToolbar">
///         <item command="OpenDocumentCommand"/>
///         <separator/>
///         <menu id="Export" title="Export" icon="..."> <item .../> </menu>
///       </toolbar>
///     </toolbars>
///
/// `contents` is the key of the area in which the toolbar stands. Further attributes of a toolbar:
/// `environments`, the identifiers of those in which it is shown, separated by blanks (all, if it is
/// missing), `align="end"`, and `area`, the name of the area among several with the same contents. Titles are
/// looked up in the string table of the domain by `titleKey`.
class ToolbarPersister
{
public:
    static ToolbarPersister* get();

    /// Adds the file's toolbars to ToolbarManager. A file that isn't XML adds nothing and gives one error
    /// with line and cause; a wrong element, a toolbar without an id or an item without a command gives one
    /// error each and is left out, the rest is added. Whether commands exist shows when the toolbar does.
    /// False if there was any error.
    bool loadToolbars(const std::wstring& path, const std::wstring& domain, Vs::Status& status);
};

} // namespace Vu
