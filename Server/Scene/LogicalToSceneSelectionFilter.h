#pragma once

#include "Server/Scene/HitInfo.h"

namespace Vs::Scene {

/// Maps a selection in the model to its place in the scene.
class LogicalToSceneSelectionFilter
{
public:
    /// Where it was picked. Null if `logical` is null or was not picked in a canvas.
    [[nodiscard]] static SceneSelection* filter(const LogicalSelection* logical)
    {
        return logical ? cast<SceneSelection>(logical->picked()) : nullptr;
    }
    /// Where it was picked, or otherwise where the scene of the asset has it. Null if the selection is null,
    /// of another asset, or has no place in the scene.
    [[nodiscard]] static StrongRef<SceneSelection> filter(const Selection* selection, Asset& asset);
    [[nodiscard]] static bool hasEquivalentResult(const Selection* selection, Asset& asset)
    {
        return filter(selection, asset).get() != nullptr;
    }
};

/// From the coordinates of the bounding box of the path's last node (those of the node above it) to those
/// above the first. False if the path is empty.
[[nodiscard]] bool NetTransform(const NodePath& path, GkMatrix3d& matrix);

} // namespace Vs::Scene
