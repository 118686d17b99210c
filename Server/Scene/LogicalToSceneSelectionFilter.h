#pragma once

#include "Server/Scene/HitInfo.h"

namespace Vs::Scene {

/// From what is selected in the model to where it was picked in the scene.
class LogicalToSceneSelectionFilter
{
public:
    /// Null if `logical` is null or was not picked in a canvas.
    static SceneSelection* filter(const LogicalSelection* logical)
    {
        return logical ? cast<SceneSelection>(logical->picked()) : nullptr;
    }
};

} // namespace Vs::Scene
