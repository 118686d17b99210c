#pragma once

#include "Server/Scene/GeometryNode.h"

namespace Vs {
class ImageSetResource;
}

namespace Vu {

class GraphicsCanvas;
class GraphicsView;

namespace SceneUtilities {

/// The opacity of a handle or marker through what hides it.
inline constexpr float MANIPULATOR_OCCLUDED_OPACITY = 0.35f;

/// The view of the active asset session that has the user's attention, or its first one; null if there is
/// none.
GraphicsView* getActiveAssetGraphicView();
/// The canvas that shows it; the active canvas, or null, if no asset is active.
GraphicsCanvas* getActiveGraphicsCanvas();

/// The node of that view under which markers and previews are hung; null if there is no view.
Rendra::Graphics::GroupNode* getActiveEditNode();

/// Gives the geometry the picture `name` of an image set's folder. `anchor` is where the node stands in the
/// picture, in its pixels from the middle; `scale` is how many logical pixels of the screen one of its own
/// takes. Returns false, and leaves the node without a picture, if the file cannot be read.
bool createTexture2(Rendra::Graphics::GeometryNode* node, const Vs::ImageSetResource* images,
                    const wchar_t* name, const GkPoint2d& anchor, float scale, float occludedOpacity);

} // namespace SceneUtilities
} // namespace Vu
