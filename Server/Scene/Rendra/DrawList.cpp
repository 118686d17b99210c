#include "Server/Scene/Rendra/DrawList.h"

#include "Server/Body/FinerMesh.h"
#include "Server/Scene/Projection.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace Rendra {

using Graphics::BodyNode;
using Graphics::GeometryNode;
using Graphics::GroupNode;
using Graphics::Highlight;
using Graphics::InstanceNode;
using Graphics::Node;

namespace {

/// The origin is moved to the scene's middle when that is farther away than this many times the scene's size.
constexpr double kOriginSlack = 4;
/// The opacity of a ghost.
constexpr float kGhostOpacity = 0.14f;

uint8_t screenValue(float linear)
{
    return uint8_t(std::lround(255 * std::pow(std::clamp(linear, 0.0f, 1.0f), 1 / 2.2f)));
}

bool hasTransparentFaces(const Vs::BodyMesh& mesh)
{
    return std::any_of(mesh.colours.begin(), mesh.colours.end(),
                       [](const Vs::Colour& colour) { return colour.a < 1; });
}

bool hasOneSidedFaces(const Vs::BodyMesh& mesh)
{
    return std::ranges::any_of(mesh.finishes, &Vs::Finish::isOneSided);
}

} // namespace

/// What is known about a node from the last update. Nodes are recognised by their ids; a record never
/// accesses a node that it isn't given.
struct DrawList::Record
{
    uint64_t id = 0;
    uint64_t seen = 0;  ///< The subtree revision of the last visit; 0 for none.
    Batch::Slot slot;   ///< Of a body.
    bool helps = false; ///< Has a helper.
    bool partlyLit = false;
    std::vector<std::unique_ptr<Record>> children;
};

/// What nodes inherit from those above.
struct DrawList::State
{
    GkMatrix3d matrix;
    const Vs::Colour* colour = nullptr;
    Highlight highlight = Highlight::None;
    const InstanceNode* effect = nullptr;
    const InstanceNode* style = nullptr;
    uint64_t firstId = 0; ///< The group directly below the root: the asset's.
    bool below = false;   ///< Below the root.
    bool ghost = false;
};

void Batch::markDirty(size_t index)
{
    if (dirtyFirst == dirtyEnd) {
        dirtyFirst = index;
        dirtyEnd = index + 1;
        return;
    }
    dirtyFirst = std::min(dirtyFirst, index);
    dirtyEnd = std::max(dirtyEnd, index + 1);
}

void Batch::count(const Instance& instance, int by)
{
    if (instance.flags & Instance::kMirrored)
        mirrored += size_t(by);
    if (instance.flags & (Instance::kPointed | Instance::kSelected))
        lit += size_t(by);
}

DrawList::DrawList() : m_root(std::make_unique<Record>()) {}

DrawList::~DrawList() = default;

void DrawList::update(const Node& root)
{
    if (m_root->id == root.id() && m_root->seen == root.subtreeRevision()) {
        updateShown();
        return;
    }
    if (m_root->id != root.id()) {
        clear(*m_root);
        *m_root = Record();
        m_root->id = root.id();
    }
    const BBox bounds = root.boundingBox();
    bool force = false;
    if (!bounds.isEmpty()) {
        const GkVector3d middle = bounds.centre().asVector();
        if ((middle - m_origin).length() > kOriginSlack * bounds.diagonal()) {
            m_origin = middle;
            force = true;
        }
    }
    visit(root, *m_root, State(), force);
    dropEmptyBatches();
    updateShown();
}

void DrawList::updateShown()
{
    if (std::exchange(m_finerRevision, Vs::FinerMesh::revision()) == Vs::FinerMesh::revision())
        return;
    for (const auto& batch : m_batches)
        if (const auto& shown = Vs::shownMesh(batch->mesh); batch->shown != shown) {
            batch->shown = shown;
            ++m_shapeRevision;
        }
}

void DrawList::visit(const Node& node, Record& record, const State& above, bool force)
{
    if (!force && record.seen == node.subtreeRevision())
        return;
    if (!node.visible()) {
        clear(record);
        record.seen = node.subtreeRevision();
        return;
    }
    State state = above;
    if (above.below && above.firstId == 0 && Vs::cast<GroupNode>(&node))
        state.firstId = node.id();
    state.below = true;
    state.matrix = above.matrix * node.transform();
    if (node.colour())
        state.colour = &*node.colour();
    state.highlight = std::max(above.highlight, node.highlight());
    state.ghost = node.ghost().value_or(above.ghost);
    if (const auto* group = Vs::cast<GroupNode>(&node)) {
        const auto* instance = Vs::cast<InstanceNode>(group);
        if (instance && instance->occludedEffect())
            state.effect = instance;
        if (instance && instance->lineStyle())
            state.style = instance;
        visitGroup(*group, record, state, force || node.revision() > record.seen);
    } else if (const auto* body = Vs::cast<BodyNode>(&node))
        visitBody(*body, record, state);
    else if (const auto* geometry = Vs::cast<GeometryNode>(&node))
        visitGeometry(*geometry, record, state);
    record.seen = node.subtreeRevision();
}

void DrawList::visitGroup(const GroupNode& node, Record& record, const State& state, bool force)
{
    if (record.children.size() != node.children().size() || node.childrenRevision() > record.seen)
        matchChildren(node, record);
    for (size_t i = 0; i < record.children.size(); ++i)
        visit(*node.children()[i], *record.children[i], state, force);
}

// Puts the records in the order of the children: the common beginning stays, the rest is found by id.
void DrawList::matchChildren(const GroupNode& node, Record& record)
{
    const auto& children = node.children();
    std::vector<std::unique_ptr<Record>>& records = record.children;
    size_t same = 0;
    while (same < records.size() && same < children.size() && records[same]->id == children[same]->id())
        ++same;
    std::unordered_map<uint64_t, std::unique_ptr<Record>> others;
    for (size_t i = same; i < records.size(); ++i)
        others.emplace(records[i]->id, std::move(records[i]));
    records.resize(same);
    records.reserve(children.size());
    for (size_t i = same; i < children.size(); ++i) {
        const auto found = others.find(children[i]->id());
        if (found != others.end()) {
            records.push_back(std::move(found->second));
            others.erase(found);
        } else {
            records.push_back(std::make_unique<Record>());
            records.back()->id = children[i]->id();
        }
    }
    for (const auto& [id, gone] : others)
        clear(*gone);
}

void DrawList::visitBody(const BodyNode& node, Record& record, const State& state)
{
    if (!node.mesh() || node.mesh()->bounds.isEmpty()) {
        take(record.slot);
        lightParts({}, record);
        return;
    }
    lightParts(node.litParts(), record);
    const Vs::Colour& colour = state.colour ? *state.colour : node.bodyColour();
    Instance instance{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j)
            instance.rows[i][j] = float(state.matrix.entry[i][j]);
    const GkVector3d shift =
        GkVector3d(state.matrix.entry[0][3], state.matrix.entry[1][3], state.matrix.entry[2][3]) - m_origin;
    instance.rows[0][3] = float(shift.x);
    instance.rows[1][3] = float(shift.y);
    instance.rows[2][3] = float(shift.z);
    instance.colour[0] = screenValue(colour.r);
    instance.colour[1] = screenValue(colour.g);
    instance.colour[2] = screenValue(colour.b);
    const float opacity = std::clamp(colour.a, 0.0f, 1.0f) * (state.ghost ? kGhostOpacity : 1);
    instance.colour[3] = uint8_t(std::lround(255 * opacity));
    instance.flags = state.highlight == Highlight::Selected  ? Instance::kSelected
                     : state.highlight == Highlight::Pointed ? Instance::kPointed
                                                             : 0;
    // Nodes are numbered in the order of the model's tree, so that the same file gets the same numbers again.
    instance.flags |= (uint32_t(node.id() - state.firstId) & Instance::kNumberMask) << Instance::kNumberShift;
    if (state.matrix.det() < 0)
        instance.flags |= Instance::kMirrored;
    if (state.ghost)
        instance.flags |= Instance::kGhost;

    const BBox box = node.mesh()->bounds.transformed(state.matrix);
    const GkVector3d centre = box.centre().asVector() - m_origin, half = (box.high() - box.low()) * 0.5;
    put(record.slot, batchFor(node.mesh(), instance), instance,
        {{float(centre.x), float(centre.y), float(centre.z)}, {float(half.x), float(half.y), float(half.z)}});
}

void DrawList::visitGeometry(const GeometryNode& node, Record& record, const State& state)
{
    takeHelper(record);
    Helper helper{Vs::StrongRef<const GeometryNode>(&node),
                  state.matrix,
                  state.colour ? *state.colour : Vs::Colour{1, 1, 1, 1},
                  std::nullopt,
                  1,
                  &record};
    if (state.style) {
        helper.colour = state.style->lineStyle()->colour;
        helper.lineWeight = state.style->lineStyle()->weight;
    }
    if (state.effect)
        helper.occluded = state.effect->occludedEffect();
    const auto later = std::find_if(m_helpers.begin(), m_helpers.end(), [&](const Helper& other) {
        return other.node->depthPriority() > node.depthPriority();
    });
    m_helpers.insert(later, std::move(helper));
    record.helps = true;
}

void DrawList::lightParts(const std::vector<Graphics::LitPart>& parts, Record& record)
{
    if (std::exchange(record.partlyLit, !parts.empty()))
        std::erase_if(m_partlyLit, [&](const PartlyLit& lit) { return lit.record == &record; });
    if (record.partlyLit)
        m_partlyLit.push_back({&record.slot, parts, &record});
}

void DrawList::takeHelper(Record& record)
{
    if (std::exchange(record.helps, false))
        std::erase_if(m_helpers, [&](const Helper& helper) { return helper.record == &record; });
}

void DrawList::clear(Record& record)
{
    take(record.slot);
    takeHelper(record);
    lightParts({}, record);
    for (const auto& child : record.children)
        clear(*child);
    record.children.clear();
    record.seen = 0;
}

void DrawList::put(Batch::Slot& slot, Batch* batch, const Instance& instance, const Batch::Box& box)
{
    if (slot.batch == batch) {
        batch->boxes[slot.index] = box;
        if (batch->instances[slot.index] == instance)
            return;
        batch->count(batch->instances[slot.index], -1);
        batch->count(instance, 1);
        const auto sameRow = [](const auto& a, const auto& b) { return std::ranges::equal(a, b); };
        if (!std::ranges::equal(batch->instances[slot.index].rows, instance.rows, sameRow) ||
            batch->instances[slot.index].colour[3] != instance.colour[3])
            ++m_shapeRevision;
        batch->instances[slot.index] = instance;
        batch->markDirty(slot.index);
        return;
    }
    take(slot);
    slot = {batch, batch->instances.size()};
    batch->instances.push_back(instance);
    batch->count(instance, 1);
    batch->boxes.push_back(box);
    batch->slots.push_back(&slot);
    batch->markDirty(slot.index);
    ++m_instances;
    ++m_layoutRevision;
    ++m_shapeRevision;
}

// The last instance fills the gap.
void DrawList::take(Batch::Slot& slot)
{
    Batch* batch = std::exchange(slot.batch, nullptr);
    if (!batch)
        return;
    const size_t last = batch->instances.size() - 1;
    batch->count(batch->instances[slot.index], -1);
    if (slot.index != last) {
        batch->instances[slot.index] = batch->instances[last];
        batch->boxes[slot.index] = batch->boxes[last];
        batch->slots[slot.index] = batch->slots[last];
        batch->slots[slot.index]->index = slot.index;
        batch->markDirty(slot.index);
    }
    batch->instances.pop_back();
    batch->boxes.pop_back();
    batch->slots.pop_back();
    batch->dirtyEnd = std::min(batch->dirtyEnd, last);
    batch->dirtyFirst = std::min(batch->dirtyFirst, batch->dirtyEnd);
    --m_instances;
    ++m_layoutRevision;
    ++m_shapeRevision;
}

Batch* DrawList::batchFor(const std::shared_ptr<const Vs::BodyMesh>& mesh, const Instance& instance)
{
    const bool transparent = instance.colour[3] < 255 || hasTransparentFaces(*mesh);
    const bool turned = (instance.flags & Instance::kMirrored) != 0 && hasOneSidedFaces(*mesh);
    Batch*& batch = m_batchOf[{mesh.get(), transparent, turned}];
    if (!batch) {
        m_batches.push_back(std::make_unique<Batch>());
        batch = m_batches.back().get();
        batch->mesh = mesh;
        batch->shown = Vs::shownMesh(mesh);
        batch->transparent = transparent;
        batch->mixed = transparent && hasTransparentFaces(*mesh);
        batch->finished = !mesh->finishes.empty();
        batch->turned = turned;
    }
    return batch;
}

// An empty batch keeps its mesh alive, so it isn't kept for long.
void DrawList::dropEmptyBatches()
{
    const size_t dropped = std::erase_if(m_batches, [&](const auto& batch) {
        if (!batch->instances.empty())
            return false;
        m_batchOf.erase({batch->mesh.get(), batch->transparent, batch->turned});
        return true;
    });
    if (dropped > 0)
        ++m_layoutRevision;
}

uint64_t DrawList::triangles() const
{
    uint64_t sum = 0;
    for (const auto& batch : m_batches)
        sum += batch->mesh->triangles.size() / 3 * batch->instances.size();
    return sum;
}

uint64_t DrawList::shownTriangles() const
{
    uint64_t sum = 0;
    for (const auto& batch : m_batches)
        sum += batch->shown->triangles.size() / 3 * batch->instances.size();
    return sum;
}

float DrawList::opacityOfGlass() const
{
    uint64_t sum = 0, count = 0;
    for (const auto& batch : m_batches)
        if (batch->transparent)
            for (const Instance& instance : batch->instances) {
                // If faces have their own colours, some may be opaque.
                sum += batch->mixed ? instance.colour[3] / 2u : instance.colour[3];
                ++count;
            }
    return count > 0 ? float(sum) / float(255 * count) : 0;
}

bool DrawList::cull(const Batch& batch, const Vs::Scene::Projection& projection, float smallest,
                    std::vector<uint32_t>& visible, Sizes& sizes) const
{
    visible.clear();
    sizes = Sizes();
    const GkMatrix3d view = projection.view() * GkMatrix3d::translation(m_origin);
    float rows[3][4];
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 4; ++j)
            rows[i][j] = float(view.entry[i][j]);
    // In camera coordinates; each side plane passes through the eye, or is parallel to the direction.
    const float tanX = float(projection.halfWidth()), tanY = float(projection.halfHeight());
    const float growX = projection.perspective() ? std::sqrt(1 + tanX * tanX) : 1;
    const float growY = projection.perspective() ? std::sqrt(1 + tanY * tanY) : 1;
    const float nearest = float(projection.clipNear()), farthest = float(projection.clipFar());
    const float pixel = float(projection.pixelSize(1));

    for (size_t i = 0; i < batch.boxes.size(); ++i) {
        const Batch::Box& box = batch.boxes[i];
        float p[3];
        for (int row = 0; row < 3; ++row)
            p[row] = rows[row][0] * box.centre[0] + rows[row][1] * box.centre[1] +
                     rows[row][2] * box.centre[2] + rows[row][3];
        const float ahead = -p[2];
        const float radius =
            std::sqrt(box.half[0] * box.half[0] + box.half[1] * box.half[1] + box.half[2] * box.half[2]);
        if (ahead + radius < nearest || ahead - radius > farthest)
            continue;
        const float scale = projection.perspective() ? ahead : 1;
        if (std::abs(p[0]) > tanX * scale + radius * growX || std::abs(p[1]) > tanY * scale + radius * growY)
            continue;
        const float unit = pixel * std::max(scale - (projection.perspective() ? radius : 0), 0.0f);
        if (2 * radius < unit * smallest)
            continue;
        const float pixels = 2 * radius / std::max(unit, 1e-30f);
        sizes.largest = std::max(sizes.largest, pixels);
        sizes.smallest = std::min(sizes.smallest, pixels);
        visible.push_back(uint32_t(i));
    }
    if (visible.size() != batch.boxes.size())
        return false;
    visible.clear();
    return true;
}

} // namespace Rendra
