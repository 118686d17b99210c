#pragma once

#include <cstdint>

namespace Vs {
struct LengthUnit;
}
namespace Vs::Scene {
struct Environment;
}

namespace Rendra {

/// How selected bodies, and those pointed at, are highlighted; the numbers are those of the user's options.
enum ESelectionEffect {
    kNormalEffect = 1,     ///< Tinted, with a glowing outline visible through everything.
    kFastEffect = 2,       ///< Tinted only.
    kSimplifiedEffect = 3, ///< Edges and the corners of a box.
    kNoEffect = 4,
};

/// How edges are drawn at which faces meet smoothly, as between a fillet and its neighbours.
enum ETangentEdges {
    kFaintTangentEdges = 0,
    kFullTangentEdges = 1,
    kNoTangentEdges = 2,
};

/// What one picture is drawn into, and how.
struct RenderTarget
{
    uint32_t framebuffer = 0; ///< Name of a framebuffer object of the current context.
    int width = 0;            ///< Of the whole picture, in pixels.
    int height = 0;
    int samples = 1; ///< The framebuffer must have that many samples; 1 for no anti-aliasing.
    bool transparentBackground = false;
    bool dome = true; ///< The background shows the environment, not a plain colour.
    /// What lights the scene; null for the first of EnvironmentManager's choice. Must outlive the picture.
    const Vs::Scene::Environment* environment = nullptr;
    bool grid = false;        ///< The layout grid, in fragments that show a model,
    bool gridNumbers = false; ///< and with it its numbers,
    bool gridOrigin = false;  ///< and a mark where its axes meet.
    /// In the corners of fragments that show a model: the directions of its axes, and a bar that tells how
    /// long things are at the point that the camera looks at.
    bool axisCross = false, scaleBar = false;
    /// The unit of the grid's lines and of the scale bar; null for millimetres.
    const Vs::LengthUnit* gridUnit = nullptr;
    /// Of the realistic style, in stops: each doubles the light.
    float exposure = 0;
    int selectionEffect = kNormalEffect; ///< Anything other than an ESelectionEffect works like kFastEffect.
    int tangentEdges = kFaintTangentEdges;
    /// For edges, in logical pixels: a line of exactly one pixel would vanish between two rows.
    static constexpr float kLineWidth = 1.15f;
    /// Width of edges in pixels of the framebuffer.
    float lineWidth = kLineWidth;
    /// How many pixels of the framebuffer make one of the picture, in each direction; above 1 for
    /// supersampling.
    int pixelScale = 1;
    /// By how much everything is shifted to the right and upwards, in pixels of the framebuffer: pictures
    /// that differ in this alone are averaged to one with more samples.
    double shiftX = 0, shiftY = 0;
    /// Meshes may deviate from the exact shapes by so many pixels of the picture; see Renderer::tooCoarse.
    double deviation = 0.5;
    /// Whether expensive effects are drawn, if the fragment asks for them: ambient occlusion, shadows,
    /// reflections, drawings. For still pictures, and for canvases that stand still or are drawn by a GPU.
    bool effects = false;
    /// The camera is moving, and another picture follows when it stops: scenes that take long are drawn with
    /// coarser meshes, and without edges and the smallest bodies.
    bool moving = false;
    /// Bodies that others hide may be left out, of which the picture shows nothing.
    bool skipsHidden = true;
    /// The part of the picture that the framebuffer covers, from its lower left corner; 0 by 0 for all of it.
    int tileX = 0, tileY = 0, tileWidth = 0, tileHeight = 0;

    /// With the user's current options. Main thread only.
    static RenderTarget current();
};

/// The cost of the last picture, for tests and benchmarks.
struct RenderStatistics
{
    uint64_t instances = 0;       ///< Visible bodies of the scene.
    uint64_t drawnInstances = 0;  ///< Those inside the view and not too small to see.
    uint64_t hiddenInstances = 0; ///< Those of them left out since others hide them.
    uint64_t drawCalls = 0;
    uint64_t triangles = 0;
    uint64_t uploadedMeshes = 0;    ///< Sent to the GPU for this picture.
    uint64_t uploadedInstances = 0; ///< The same.
    bool glass = false;             ///< Whether anything in view is transparent.
    bool unlined = false;           ///< Whether faces are in view that don't end in lines.
};

} // namespace Rendra
