#pragma once

#include "UI/Base/Workspace/Shell.h"

namespace Vu::Commands {

/// Common base of the shells that show graphics: binds the shell's views into the window's canvases.
class SceneBasedShell : public Vs::Implements<SceneBasedShell, Shell>
{
public:
    using Implements::Implements;

    GraphicsView* nextView(GraphicsView* view) { return onNextView(view); }

    /// Gives each canvas a view of this shell, or only the active canvas of a split. A canvas for which there
    /// is no view gets one from the session, if it is an asset's. The flags go to GraphicsCanvas::view as
    /// they are.
    void bindView(bool flagA, bool flagB);

    /// Clears each canvas that shows `view`; null means those that show none.
    void unbindView(GraphicsView* view);

private:
    GraphicsView* freeView();
};

} // namespace Vu::Commands
