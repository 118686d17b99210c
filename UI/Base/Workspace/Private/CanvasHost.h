#pragma once

#include <memory>
#include <vector>

namespace Vu {

class GraphicsCanvas;

/// What the areas and windows have to know of the canvases, which stand above them. `installHost` installs
/// its own; until then this one makes none. Main thread only.
class CanvasHost
{
public:
    virtual ~CanvasHost() = default;

    /// Never null.
    static CanvasHost* get();
    /// Installs a host, which is not owned. Null brings the empty one back.
    static void install(CanvasHost* host);

    /// The canvas of an area whose contents are "GraphicsCanvas".
    virtual std::shared_ptr<GraphicsCanvas> make() { return nullptr; }
    /// Says that the arrangement of these canvases is shown by its window from now on, or no longer.
    virtual void inSight(const std::vector<GraphicsCanvas*>&, bool) {}
    /// Has all canvases drawn at the end of the event.
    virtual void invalidateAll() {}
    /// Has all canvases drawn now.
    virtual void repaintAll() {}
};

} // namespace Vu
