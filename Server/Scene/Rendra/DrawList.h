#pragma once

#include "Server/Scene/GeometryNode.h"

#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace Vs::Scene {
class Projection;
}

namespace Rendra {

/// One occurrence of a mesh, in the layout of the vertex shader.
struct Instance
{
    static constexpr uint32_t kPointed = 1, kSelected = 2, kMirrored = 4, kGhost = 8;
    /// Above these bits, the number of the body's node among those of its asset, truncated to the remaining
    /// bits.
    static constexpr uint32_t kNumberShift = 8, kNumberMask = 0xFFF;

    float rows[3][4];  ///< Body to scene coordinates, relative to the draw list's origin.
    uint8_t colour[4]; ///< As it looks on the screen, not linear.
    uint32_t flags;
    friend bool operator==(const Instance&, const Instance&) = default;
};

/// All occurrences of one mesh that are drawn the same way.
struct Batch
{
    struct Box
    {
        float centre[3], half[3];
    };
    struct Slot;

    std::shared_ptr<const Vs::BodyMesh> mesh;
    std::shared_ptr<const Vs::BodyMesh> shown; ///< Its finer form, or itself; see Vs::shownMesh.
    bool transparent = false;                  ///< At least some faces are transparent.
    bool mixed = false;                        ///< Others may be opaque.
    bool finished = false;                     ///< At least some faces have a material.
    /// Of a mesh with faces that are seen from one side alone: all of its instances are mirrored, or none is.
    bool turned = false;
    std::vector<Instance> instances;
    std::vector<Box> boxes; ///< Around each instance, relative to the origin.
    std::vector<Slot*> slots;
    /// The range changed since the last upload: from `dirtyFirst` up to but not including `dirtyEnd`.
    size_t dirtyFirst = 0, dirtyEnd = 0;
    size_t mirrored = 0; ///< How many instances mirror the mesh.
    size_t lit = 0;      ///< How many are pointed at or selected.

    void markDirty(size_t index);
    void count(const Instance& instance, int by);
};

/// The position of a body's instance.
struct Batch::Slot
{
    Batch* batch = nullptr;
    size_t index = 0;
};

/// A body with parts that are pointed at or selected.
struct PartlyLit
{
    const Batch::Slot* slot;
    std::vector<Graphics::LitPart> parts;
    const void* record; ///< The record in the list that it belongs to.
};

/// One occurrence of geometry that isn't a body.
struct Helper
{
    Vs::StrongRef<const Graphics::GeometryNode> node;
    GkMatrix3d matrix; ///< Geometry to scene coordinates.
    Vs::Colour colour;
    std::optional<Graphics::OccludedEffect> occluded;
    float lineWeight;   ///< A multiple of the default width.
    const void* record; ///< The record in the list that it belongs to.
};

/// What must be drawn for a tree of nodes, updated incrementally from the changes of the nodes. Knows nothing
/// about the GPU.
class DrawList
{
public:
    DrawList();
    ~DrawList();

    /// Processes what changed below `root` since the last call.
    void update(const Graphics::Node& root);

    /// Batches may be empty. In no particular but a stable order.
    const std::vector<std::unique_ptr<Batch>>& batches() const { return m_batches; }
    size_t instances() const { return m_instances; }
    /// Of all instances together.
    uint64_t triangles() const;
    /// The same with the forms that are shown.
    uint64_t shownTriangles() const;
    /// The mean fraction of light that transparent bodies block; 0 if there are none.
    float opacityOfGlass() const;
    /// Lowest depth priority first.
    const std::vector<Helper>& helpers() const { return m_helpers; }
    const std::vector<PartlyLit>& partlyLit() const { return m_partlyLit; }
    /// The origin of the instances' positions: near the middle of the scene, so that single precision
    /// suffices for a scene far from the world's origin.
    const GkVector3d& origin() const { return m_origin; }
    /// Grows whenever batches or their lengths change, so that their storage must be laid out again.
    uint64_t layoutRevision() const { return m_layoutRevision; }
    /// Grows whenever a body is added, removed or moved, or gets another mesh, form of it or opacity; not
    /// with colours and highlights.
    uint64_t shapeRevision() const { return m_shapeRevision; }

    struct Sizes
    {
        float largest = 0, smallest = 1e30f;
    };
    /// Which instances of a batch are inside the view and at least `smallest` pixels across. Returns true if
    /// all of them are, with `visible` empty. `sizes` becomes the sizes in pixels of those that are.
    bool cull(const Batch& batch, const Vs::Scene::Projection& projection, float smallest,
              std::vector<uint32_t>& visible, Sizes& sizes) const;

private:
    struct Record;
    struct State;

    void visit(const Graphics::Node& node, Record& record, const State& above, bool force);
    void visitBody(const Graphics::BodyNode& node, Record& record, const State& state);
    void visitGeometry(const Graphics::GeometryNode& node, Record& record, const State& state);
    void visitGroup(const Graphics::GroupNode& node, Record& record, const State& state, bool force);
    void matchChildren(const Graphics::GroupNode& node, Record& record);
    void clear(Record& record);
    void put(Batch::Slot& slot, Batch* batch, const Instance& instance, const Batch::Box& box);
    void take(Batch::Slot& slot);
    void takeHelper(Record& record);
    void lightParts(const std::vector<Graphics::LitPart>& parts, Record& record);
    Batch* batchFor(const std::shared_ptr<const Vs::BodyMesh>& mesh, const Instance& instance);
    void dropEmptyBatches();
    void updateShown();

    std::unique_ptr<Record> m_root;
    std::vector<std::unique_ptr<Batch>> m_batches;
    using BatchKey = std::tuple<const Vs::BodyMesh*, bool, bool>; ///< With `transparent` and `turned`.
    std::map<BatchKey, Batch*> m_batchOf;
    std::vector<Helper> m_helpers;
    std::vector<PartlyLit> m_partlyLit;
    GkVector3d m_origin;
    size_t m_instances = 0;
    uint64_t m_layoutRevision = 0, m_shapeRevision = 1;
    uint64_t m_finerRevision = 0; ///< FinerMesh::revision of what the batches show.
};

} // namespace Rendra
