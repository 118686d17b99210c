#pragma once

#include "Server/Scene/Projection.h"
#include "Server/Scene/RenderTarget.h"
#include "Server/Scene/Rendra/ContactShadow.h"
#include "Server/Scene/Rendra/DrawList.h"
#include "Server/Scene/Rendra/EnvironmentLight.h"
#include "Server/Scene/Rendra/Ground.h"
#include "Server/Scene/Rendra/InstanceStore.h"
#include "Server/Scene/Rendra/MeshStore.h"
#include "Server/Scene/Rendra/ObjectShadow.h"
#include "Server/Scene/Rendra/Program.h"
#include "Server/Scene/ViewFragment.h"

namespace Rendra {

/// A part of the picture, in pixels of the framebuffer from the picture's lower left corner.
struct Area
{
    int x, y, width, height;
};

Area intersection(const Area& a, const Area& b);

/// What is kept of one tree of nodes from picture to picture.
struct KeptScene
{
    uint64_t root;
    uint64_t lastUse = 0;
    DrawList list;
    InstanceStore instances;
    GroundFinder ground;
    ContactShadow::Kept contact;
    ObjectShadow::Kept lit;

    void release()
    {
        instances.release();
        contact.darkness.release();
        lit.depths.release();
        lit.glass.release();
    }
};

/// The colours of what is pointed at and of what is selected, as they look on the screen; lighter ones where
/// lines are light.
struct HighlightColours
{
    explicit HighlightColours(const Vs::Scene::Environment& environment);
    float pointed[3], selected[3];
};

/// What a pass is given: one fragment, and the part of the picture in which it is drawn now.
struct Frame
{
    Vs::Scene::ViewFragment& fragment;
    KeptScene& scene;
    MeshStore& meshes;
    const Vs::Scene::Projection& projection; ///< Of the whole of `area`.
    const RenderTarget& target;
    Area area; ///< The whole fragment.
    Area part; ///< What of it lies in the tile.
    Area tile; ///< What the framebuffer holds; its lower left corner is the framebuffer's.
    RenderStatistics& statistics;
    const Vs::Scene::Environment& environment;
    const EnvironmentLight& light; ///< Of the environment.
    /// The view moves, and there is more in it than can be drawn quickly: what a moving picture doesn't show
    /// may be left out.
    bool coarse = false;
    /// The view moves, and there is no graphics unit: fine shading is left for when it stands still.
    bool quick = false;
    bool software = false; ///< No graphics unit does the work, but the processor.
    float smallest = 0;    ///< Bodies that are fewer pixels across are left out.

    const Vs::Scene::RenderParams& params() const { return *fragment.renderParams(); }
    /// Whether the fragment shows a model, with what stands around it, and not only helps over another.
    bool showsModel() const
    {
        return fragment.data()->supportSelectBackground() &&
               params().visualStyle() != Vs::Scene::kHelpersOnly;
    }

    /// Directs what follows into the picture, with the state that every pass begins with: depths are tested
    /// and written, nothing is blended or left out.
    void drawIntoPicture() const;

    /// Makes the program current, with its uniforms `view` (from coordinates relative to the draw list's
    /// origin to the camera's), `projection` (from there into `into`, which may be another part than the
    /// frame's) and `perspective`.
    void setView(const Program& program, const Area& into) const;
    void setView(const Program& program) const { setView(program, part); }

    /// From camera to clip coordinates of a part of the fragment, row by row.
    void clipMatrix(const Area& into, double (&rows)[4][4]) const;

    /// Sets the uniforms `tinted`, `cover`, `pointedColour` and `selectedColour` of the program, which must
    /// be current.
    void setHighlights(const Program& program) const;

    /// Sets the uniforms of the environment's light for the program, which must be current.
    void setLight(const Program& program) const;

    /// The width of lines nearest to `wanted` that the driver draws.
    float lineWidth(float wanted) const;

    /// The mesh of a batch in the form that suits the picture.
    const GlMesh& meshOf(const Batch& batch, const InstanceStore::Range& range) const;

    /// Whether anything in view is transparent.
    bool showsGlass() const;

    enum class Faces {
        OfOpaque, ///< Of the batches that have nothing transparent.
        OfMixed,  ///< Of those in which some faces are, and others not.
        OfGlass,  ///< Of all that have anything transparent.
    };
    /// Draws faces of the scene with the program that is current, which takes the attributes of Attribute.
    void drawFaces(Faces which) const;
};

/// One thing that is drawn of every fragment, after the others in a fixed order (see Renderer.cpp). Owns the
/// objects of the graphics unit that it needs.
class Pass
{
public:
    virtual ~Pass() = default;

    /// Makes the programs. False, with the reason in the status, if the driver refuses one.
    virtual bool make(Vs::Status& status) = 0;
    /// Leaves the state of the context as `Frame::drawIntoPicture` makes it.
    virtual void draw(const Frame& frame) = 0;
    /// Frees what was made, with the context current.
    virtual void release() = 0;
    /// Called after each picture: frees what nobody needs any more.
    virtual void collect() {}
};

} // namespace Rendra
