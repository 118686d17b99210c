#pragma once

#include "UI/Base/Workspace/Shell.h"

namespace Vu::Commands {

/// Base of the shells that show graphics: binds the shell's views to the window's canvases.
class SceneBasedShell : public Vs::Implements<SceneBasedShell, Shell>
{
public:
    using Implements::Implements;

    GraphicsView* nextView(GraphicsView* view) { return onNextView(view); }

    /// Gives each canvas a view of this shell, or only the active canvas of a split. A canvas without one
    /// gets a view from the session, if it is an asset's. The flags are passed on to GraphicsCanvas::view.
    void bindView(bool flagA, bool flagB);

    /// Clears each canvas that shows `view`; null means those that show none.
    void unbindView(GraphicsView* view);

private:
    GraphicsView* freeView();
};

} // namespace Vu::Commands
