#pragma once

#include "Server/Scene/Projection.h"
#include "Server/Scene/RenderTarget.h"
#include "Server/Scene/Rendra/ContactShadow.h"
#include "Server/Scene/Rendra/DrawList.h"
#include "Server/Scene/Rendra/EnvironmentLight.h"
#include "Server/Scene/Rendra/Ground.h"
#include "Server/Scene/Rendra/InstanceStore.h"
#include "Server/Scene/Rendra/LampOnGround.h"
#include "Server/Scene/Rendra/MeshStore.h"
#include "Server/Scene/Rendra/ObjectShadow.h"
#include "Server/Scene/Rendra/Program.h"
#include "Server/Scene/ViewFragment.h"

#include <cstdint>
#include <vector>

namespace Rendra {

/// A part of the picture, in pixels of the framebuffer from the picture's lower left corner.
struct Area
{
    int x, y, width, height;
};

Area intersection(const Area& a, const Area& b);

/// What is kept for one tree of nodes between pictures.
struct KeptScene
{
    uint64_t root;
    uint64_t lastUse = 0;
    DrawList list;
    InstanceStore instances;
    GroundFinder ground;
    ContactShadow::Kept contact;
    ObjectShadow::Kept lit;
    LampOnGround::Kept onGround;
    /// Which instances were seen in the last picture, batch after batch; see HiddenBodies.
    struct Seen
    {
        uint64_t layout = 0; ///< DrawList::layoutRevision of the numbers.
        std::vector<uint8_t> states;
    } seen;

    void release()
    {
        instances.release();
        contact.darkness.release();
        lit.depths.release();
        lit.glass.release();
        onGround.light.release();
    }
};

/// The colours of what is pointed at and of what is selected, as they look on the screen; lighter ones if
/// lines are light.
struct HighlightColours
{
    explicit HighlightColours(const Vs::Scene::Environment& environment);
    float pointed[3], selected[3];
};

/// The input of a pass: one fragment, and the part of the picture in which it is being drawn.
struct Frame
{
    Vs::Scene::ViewFragment& fragment;
    KeptScene& scene;
    MeshStore& meshes;
    const Vs::Scene::Projection& projection; ///< Of the whole of `area`.
    const RenderTarget& target;
    Area area; ///< The whole fragment.
    Area part; ///< The part of it that is in the tile.
    Area tile; ///< What the framebuffer holds; both have the same lower left corner.
    RenderStatistics& statistics;
    const Vs::Scene::Environment& environment;
    const EnvironmentLight& light; ///< Of the environment.
    /// The view is moving, and contains more than can be drawn quickly: what a moving picture doesn't show
    /// may be left out.
    bool coarse = false;
    /// Bodies are drawn in their finer forms, as far as there are such.
    bool finer = true;
    /// The view is moving, and there is no GPU: fine shading waits until it stops.
    bool quick = false;
    bool software = false; ///< Rendering is done by the processor, not by a GPU.
    float smallest = 0;    ///< Bodies fewer pixels across are left out.

    const Vs::Scene::RenderParams& params() const { return *fragment.renderParams(); }
    /// Whether the fragment shows a model and its surroundings, rather than only helpers over another.
    bool showsModel() const
    {
        return fragment.data()->supportSelectBackground() &&
               params().visualStyle() != Vs::Scene::kHelpersOnly;
    }

    /// Directs the following drawing into the picture, with the state in which every pass begins: depths are
    /// tested and written, nothing is blended or culled.
    void drawIntoPicture() const;

    /// Makes the program current, with its uniforms `view` (from coordinates relative to the draw list's
    /// origin to the camera's), `projection` (from there into `into`, which may be another part than the
    /// frame's) and `perspective`.
    void setView(const Program& program, const Area& into) const;
    void setView(const Program& program) const { setView(program, part); }

    /// From camera to clip coordinates of a part of the fragment, row by row.
    void clipMatrix(const Area& into, double (&rows)[4][4]) const;

    /// From coordinates relative to the draw list's origin to clip coordinates of the frame's part, row by
    /// row.
    void sceneToClip(double (&rows)[4][4]) const;

    /// Sets the uniforms `tinted`, `cover`, `pointedColour` and `selectedColour` of the program, which must
    /// be current.
    void setHighlights(const Program& program) const;

    /// Sets the uniforms of the environment's light for the program, which must be current.
    void setLight(const Program& program) const;

    /// The line width nearest to `wanted` that the driver supports.
    float lineWidth(float wanted) const;

    /// What is shown of a batch's bodies, apart from a coarser form.
    const std::shared_ptr<const Vs::BodyMesh>& shownOf(const Batch& batch) const
    {
        return finer ? batch.shown : batch.mesh;
    }
    /// The mesh of a batch in the form that suits the picture.
    const GlMesh& meshOf(const Batch& batch, const InstanceStore::Range& range) const;

    /// Whether the mesh of a batch may be coarser where that isn't seen.
    bool maySmooth(const Batch& batch) const;

    /// Whether anything in view is transparent.
    bool showsGlass() const;

    enum class Faces {
        OfOpaque,      ///< Of the batches that have nothing transparent.
        OfMixed,       ///< Of those in which some faces are transparent, and others not.
        OfGlass,       ///< Of all that have anything transparent.
        FrontsOfGlass, ///< The same, without the backs of closed bodies.
    };
    enum class Materials {
        Ignored,
        OfNone, ///< Only bodies without a material.
        OfSome, ///< Only the others: the current program gets the finish of their faces, see setFinish.
    };
    enum class Sides {
        AsSeen, ///< Faces that are seen from one side alone aren't drawn from the other.
        Both,   ///< They are, since they throw shadows.
    };
    /// Draws faces of the scene with the current program, which takes the attributes of Attribute.
    void drawFaces(Faces which, Materials materials = Materials::Ignored, Sides sides = Sides::AsSeen) const;
    /// Whether any body in view has a material, or else none.
    bool shows(Materials materials) const;
};

/// One layer of what is drawn for every fragment, in a fixed order (see Renderer.cpp). Owns the GPU objects
/// that it needs.
class Pass
{
public:
    virtual ~Pass() = default;

    /// Creates the programs. False, with the reason in the status, if the driver rejects one.
    virtual bool make(Vs::Status& status) = 0;
    /// Leaves the state of the context as `Frame::drawIntoPicture` sets it.
    virtual void draw(const Frame& frame) = 0;
    /// Frees what was created, with the context current.
    virtual void release() = 0;
    /// Called after each picture: frees what is no longer needed.
    virtual void collect() {}
};

} // namespace Rendra
