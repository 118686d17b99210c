#include "Server/Scene/OffscreenRenderer.h"

#include "Server/Base/SiblingLibrary.h"
#include "Server/Scene/GraphicsOptionGroup.h"

namespace Vs::Scene {

ImageOptions ImageOptions::current()
{
    const GraphicsOptionGroup& group = *GraphicsOptionGroup::get();
    ImageOptions options;
    options.antiAliasing = group.MSAA();
    options.transparentBackground = group.transparentBackground();
    options.dome = group.displayDome();
    options.grid = group.showLayoutGrid();
    options.gridNumbers = group.showGridRefNumbers();
    return options;
}

OffscreenRenderer* OffscreenRenderer::get()
{
    static auto* const renderer =
        SiblingLibrary("libVsRendra10.so").function<OffscreenRenderer* (*)()>("vsOffscreenRenderer")();
    return renderer;
}

} // namespace Vs::Scene
