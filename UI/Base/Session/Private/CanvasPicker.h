#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <vector>

namespace Vs {
class SelectionFilter;
}

namespace Vu {

class AssetSession;
class GraphicsCanvas;
class MouseEvent;
struct CanvasBand;

/// Whether the canvas shows the session's model. Null shows nothing.
bool shows(const GraphicsCanvas* canvas, const AssetSession& session);

/// The objects of the session's model that lie under the mouse and are of a kind that the filter may accept,
/// the most likely one first: vertices before edges before faces, and these before the solids, bodies and
/// components that they belong to. Without a filter, components. Unless the user wants what is hidden as well
/// (GraphicsOptionGroup::selectClosestItemOnly), only what is seen there.
std::vector<Vs::StrongRef<Vs::Selection>> objectsUnder(const MouseEvent& event, const AssetSession& session,
                                                       const Vs::SelectionFilter* filter);

/// The objects in a band over the canvas, in the order of the model: components, if the filter may accept
/// any; else bodies; else faces, edges and vertices. A band that is crossing takes them also if only a part
/// of them lies in it.
std::vector<Vs::StrongRef<Vs::Selection>> objectsIn(const GraphicsCanvas& canvas, const CanvasBand& band,
                                                    const AssetSession& session,
                                                    const Vs::SelectionFilter* filter);

} // namespace Vu
