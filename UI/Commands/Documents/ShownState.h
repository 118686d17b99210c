#pragma once

#include "Server/Geometry/GkPoint3d.h"
#include "Server/Geometry/GkVector3d.h"

#include <string>
#include <vector>

namespace Vs {
class Status;
}

namespace Vu::Commands {

/// How the active session shows its model, and which parts of it are selected and hidden: for a document that
/// is reloaded and should look as before. Main thread only.
class ShownState
{
public:
    /// Of the active session, as it is now.
    ShownState();
    /// Applies to the active session, which may be another one. Things that no longer exist aren't selected.
    void restore() const;
    /// The same for what is hidden, for a file that doesn't say so itself.
    void restoreHidden(Vs::Status& status) const;

private:
    struct View
    {
        bool known = false;
        int projection = 0;
        GkPoint3d position, target;
        GkVector3d up;
        double width = 0, height = 0;
    };
    View m_view;
    std::vector<std::wstring> m_selected, m_hidden; ///< Paths as text.
};

} // namespace Vu::Commands
