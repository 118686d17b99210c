#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs::Scene {

/// The user's options about what is drawn.
class GraphicsOptionGroup : public Implements<GraphicsOptionGroup, OptionGroup>
{
public:
    static GraphicsOptionGroup* get();

    Option<bool> MSAA{*this, "MSAA", true}; ///< Smooth edges.
    /// Pictures have a transparent background; views on the screen never do.
    Option<bool> transparentBackground{*this, "transparentBackground", false};
    Option<bool> displayGroundPlane{*this, "displayGroundPlane", false};
    Option<bool> displayDome{*this, "displayDome", true}; ///< The shaded sky behind the model.
    /// An EnvironmentManager's id.
    Option<std::wstring> activeEnvironment{*this, "activeEnvironment", L"PhotoBooth"};
    Option<bool> groundShadowEnabled{*this, "groundShadowEnabled", true};
    Option<bool> groundReflectionEnabled{*this, "groundReflectionEnabled", false};
    Option<bool> ambientOccludedEnabled{*this, "ambientOccludedEnabled", true}; ///< Darker corners.
    Option<bool> showLayoutGrid{*this, "showLayoutGrid", false};
    Option<bool> showGridRefNumbers{*this, "showGridRefNumbers", false};
    /// Directions and lengths, in the corners of views on the screen and of pictures that show these.
    Option<bool> showAxisCross{*this, "showAxisCross", false};
    Option<bool> showScaleBar{*this, "showScaleBar", false};
    /// A pick in a view takes only what is visible there; otherwise also what is hidden.
    Option<bool> selectClosestItemOnly{*this, "selectClosestItemOnly", true};
    Option<int> NPREffect{*this, "NPREffect", 0};
    Option<int> selectionEffectOption{*this, "selectionEffectOption", 1};
    Option<int> visualStyle{*this, "visualStyle", 2}; ///< An EVisualStyle.
    /// How much brighter than usual realistic pictures are, in stops: each doubles the light.
    Option<double> exposure{*this, "exposure", 0};
    /// Edges at which faces meet smoothly: "faint", "full" like others, or "none".
    Option<std::wstring> tangentEdges{*this, "tangentEdges", L"faint"};
    /// How finely round faces are drawn when the camera comes near: "coarse", "normal" or "fine".
    Option<std::wstring> meshQuality{*this, "meshQuality", L"normal"};
    Option<int> objectShadowType{*this, "objectShadowType", 0}; ///< 0 none, 1 sharp, 2 and 3 soft.
    /// Whether somebody has set it, be it to 0: until then the visual style decides.
    bool objectShadowIsChosen() const;
    /// Sets it, also to what it is by default.
    void chooseObjectShadow(int type);
    Option<int> cameraProjection{*this, "cameraProjection", 2}; ///< An EProjection.
    Option<bool> cameraPerspWithOrthoFaces{*this, "cameraPerspWithOrthoFaces", false};

private:
    GraphicsOptionGroup() : Implements("Graphics") {}
};

} // namespace Vs::Scene
