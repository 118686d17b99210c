#include "Server/DataModel/Measure/MeasureMgr.h"

#include "Server/Base/Require.h"
#include "Server/Base/Status.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/AllAssets.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Measure/Private/MeasureTexts.h"
#include "Server/DataModel/Measure/Private/MeasuredObject.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/DataModel/Selection/PartHistory.h"
#include "Server/DataModel/Selection/SelectionFilter.h"

#include <algorithm>

namespace Vs {

namespace {

constexpr std::pair<ESelectionType, ObjectPath::Leaf> kSelectionTypes[] = {
    {ESelectionType::Vertex, ObjectPath::Leaf::Vertex},       {ESelectionType::Edge, ObjectPath::Leaf::Edge},
    {ESelectionType::Component, ObjectPath::Leaf::Component}, {ESelectionType::Face, ObjectPath::Leaf::Face},
    {ESelectionType::Body, ObjectPath::Leaf::Body},
};

/// Accepts the objects whose paths end in one kind of leaf; as a body also a solid of one, which nobody has
/// to look for.
class LeafFilter : public Implements<LeafFilter, SelectionFilter>
{
public:
    explicit LeafFilter(ObjectPath::Leaf leaf) : m_leaf(leaf) {}

    bool accepts(const Selection& selection) const override
    {
        const auto* logical = cast<LogicalSelection>(&selection);
        return logical &&
               (mayAccept(logical->path().leaf) ||
                (m_leaf == ObjectPath::Leaf::Body && logical->path().leaf == ObjectPath::Leaf::Solid));
    }
    bool mayAccept(ObjectPath::Leaf leaf) const override { return leaf == m_leaf; }

private:
    ObjectPath::Leaf m_leaf;
};

bool isOpen(const Asset* asset)
{
    const DocumentMgr* manager = DocumentMgr::get();
    for (unsigned i = 0; i < manager->documents(); ++i) {
        const std::vector<Asset*> assets = allAssets(*manager->document(i));
        if (std::ranges::find(assets, asset) != assets.end())
            return true;
    }
    return false;
}

MeasuredObject objectOf(const StrongRef<LogicalSelection>& selection)
{
    assertMainThread();
    if (!selection)
        throw MeasureError(MeasureTexts::nothingSelected());
    // A selection may outlive its model.
    if (!isOpen(selection->asset()))
        throw MeasureError(MeasureTexts::closedModel());
    return MeasuredObject(*selection);
}

/// Runs `work`, which returns the result or throws what goes into the status.
template <class Work>
bool answered(MeasureResult& result, Status* status, Work&& work)
{
    try {
        result = work();
        return true;
    } catch (const MeasureError& error) {
        if (status)
            status->addError(error.message());
        return false;
    }
}

/// Throws unless so many objects can be measured in this way.
void requireCount(bool right, EMeasureType type)
{
    if (!right)
        throw MeasureError(MeasureTexts::wrongCount(type));
}

} // namespace

MeasureMgr* MeasureMgr::get()
{
    static auto* const manager = new MeasureMgr;
    return manager;
}

void MeasureMgr::initialize()
{
    assertMainThread();
    if (m_filters.empty())
        for (const auto& [type, leaf] : kSelectionTypes)
            m_filters.emplace_back(type, std::make_unique<LeafFilter>(leaf));
}

std::vector<const SelectionFilter*> MeasureMgr::filters(ESelectionType type) const
{
    std::vector<const SelectionFilter*> found;
    for (const auto& [own, filter] : m_filters)
        if (own == type)
            found.push_back(filter.get());
    return found;
}

bool MeasureMgr::measure(const StrongRef<LogicalSelection>& selection, EMeasureType type,
                         MeasureResult& result, Status* status) const
{
    return answered(result, status, [&] {
        requireCount(type <= EMeasureType::LoopLength ||
                         (type >= EMeasureType::PositionX && type <= EMeasureType::PositionZ),
                     type);
        return objectOf(selection).measure(type);
    });
}

bool MeasureMgr::measure(const StrongRef<LogicalSelection>& first, const StrongRef<LogicalSelection>& second,
                         EMeasureType type, MeasureResult& result, Status* status) const
{
    return answered(result, status, [&] {
        requireCount(type == EMeasureType::Distance || type == EMeasureType::Angle ||
                         type >= EMeasureType::DeltaX,
                     type);
        MeasureResult found = objectOf(first).measureWith(objectOf(second), type);
        const GkVector3d delta = found.point2 - found.point1;
        if (type >= EMeasureType::DeltaX)
            found.value = type == EMeasureType::DeltaX   ? delta.x
                          : type == EMeasureType::DeltaY ? delta.y
                                                         : delta.z;
        return found;
    });
}

bool MeasureMgr::measure(const StrongRef<LogicalSelection>& first, const StrongRef<LogicalSelection>& second,
                         const StrongRef<LogicalSelection>& third, EMeasureType type, MeasureResult& result,
                         Status* status) const
{
    return answered(result, status, [&]() -> MeasureResult {
        requireCount(type == EMeasureType::Angle, type);
        const MeasuredObject from = objectOf(first), apex = objectOf(second), to = objectOf(third);
        for (const MeasuredObject* leg : {&from, &to})
            if (&leg->asset() != &apex.asset())
                throw MeasureError(MeasureTexts::otherModel(leg->name()));
        const GkPoint3d middle = apex.position();
        const GkPoint3d ends[] = {from.position(), to.position()};
        for (const bool isSecond : {false, true})
            if (ends[isSecond].isEqualTo(middle))
                throw MeasureError(MeasureTexts::samePlaces((isSecond ? to : from).name()));
        return {(ends[0] - middle).angleTo(ends[1] - middle), ends[0], middle, ends[1]};
    });
}

std::wstring MeasureMgr::nameOf(const LogicalSelection& selection) const
{
    assertMainThread();
    const Component* component =
        isOpen(selection.asset()) ? selection.asset()->findComponent(selection.componentId()) : nullptr;
    if (!component || !selection.path().isPartOfBody())
        return component ? component->name : std::wstring();
    const ObjectPath& path = selection.path();
    if (path.leaf == ObjectPath::Leaf::Solid)
        return MeasureTexts::solidOf(path.index + 1, component->name);
    ShapeKind kind = path.leaf == ObjectPath::Leaf::Vertex ? ShapeKind::Vertex
                     : path.leaf == ObjectPath::Leaf::Edge ? ShapeKind::Curve
                                                           : ShapeKind::Face;
    try {
        // Whatever the form, it has a radius or an answer that tells the form. In a preview the number is
        // that of another part.
        if (const auto* body = cast<ModelBody>(component->body.get());
            body && path.leaf != ObjectPath::Leaf::Vertex && !showsPreview(*selection.asset()))
            if (const ShapeAnswer answer = body->measurePart(path.leaf, path.index, EMeasureType::Radius);
                answer.kind < ShapeKind::Body)
                kind = answer.kind;
    } catch (const std::runtime_error&) {
        // A part whose form can't be told is still a face, or an edge.
    }
    return MeasureTexts::partOf(kind, component->name);
}

std::vector<StrongRef<LogicalSelection>>
MeasureMgr::getLoopSelections(const StrongRef<LogicalSelection>& selection) const
{
    std::vector<StrongRef<LogicalSelection>> edges;
    try {
        const MeasuredObject face = objectOf(selection);
        for (const uint32_t edge : face.loop())
            edges.emplace_back(new LogicalSelection(
                selection->asset(), {selection->path().component, ObjectPath::Leaf::Edge, edge}, nullptr));
    } catch (const MeasureError&) {
        edges.clear();
    }
    return edges;
}

} // namespace Vs
