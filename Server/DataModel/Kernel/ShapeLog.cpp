#include "Server/DataModel/Kernel/ShapeLog.h"

#include "Server/DataModel/Kernel/SubShapes.h"
#include "Server/DataModel/Kernel/XdeTree.h"

#include <NCollection_DataMap.hxx>
#include <Standard_Failure.hxx>
#include <TopTools_ShapeMapHasher.hxx>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace Vs::Kernel {

namespace {

using Leaf = ObjectPath::Leaf;
using Numbers = PartSuccessors::Numbers;

/// The parts of one kind, and at which numbers each stands: a face that two solids share has two.
class NumberedParts
{
public:
    NumberedParts(const SubShapes& shapes, Leaf leaf)
    {
        for (uint32_t index = 0;; ++index) {
            const TopoDS_Shape part = shapes.part(leaf, index);
            if (part.IsNull())
                return;
            if (!m_numbers.IsBound(part))
                m_numbers.Bind(part, {});
            m_numbers.ChangeFind(part).push_back(index);
            m_parts.push_back(part);
        }
    }
    const std::vector<TopoDS_Shape>& all() const { return m_parts; }
    const Numbers& numbersOf(const TopoDS_Shape& part) const
    {
        static const Numbers none;
        const Numbers* found = m_numbers.Seek(part);
        return found ? *found : none;
    }

private:
    std::vector<TopoDS_Shape> m_parts;
    NCollection_DataMap<TopoDS_Shape, Numbers, TopTools_ShapeMapHasher> m_numbers;
};

uint32_t successorOf(uint32_t index, const NumberedParts& before, const NumberedParts& after,
                     const Successors& successors)
{
    const TopoDS_Shape& part = before.all()[index];
    std::vector<TopoDS_Shape> found;
    try {
        found = successors(part);
    } catch (const Standard_Failure&) {
        // The operation doesn't track parts of that kind.
    }
    if (found.size() != 1)
        return PartSuccessors::kNone;
    const Numbers& numbers = after.numbersOf(found.front());
    const Numbers& own = before.numbersOf(part);
    if (numbers.size() == 1)
        return numbers.front();
    const auto rank = std::find(own.begin(), own.end(), index) - own.begin();
    return numbers.size() == own.size() ? numbers[size_t(rank)] : PartSuccessors::kNone;
}

/// The edges of a shape by the two faces that each lies between.
class EdgesBetween
{
public:
    explicit EdgesBetween(const SubShapes& shapes)
    {
        const NumberedParts faces(shapes, Leaf::Face);
        uint32_t index = 0;
        for (const VisibleEdge& edge : visibleEdges(shapes.shape())) {
            Sides sides;
            for (const TopoDS_Shape& face : edge.faces)
                for (const uint32_t number : faces.numbersOf(face))
                    sides.insert(number);
            m_sides.push_back(sides);
            m_edges[sides].push_back(index++);
        }
    }
    /// The only edge between the successors of the faces of an edge that is the only one between them.
    uint32_t successorOf(uint32_t edge, const Numbers& faceSuccessors, const EdgesBetween& after) const
    {
        const Sides& sides = m_sides[edge];
        Sides later;
        for (const uint32_t face : sides)
            later.insert(faceSuccessors[face]);
        const auto found = after.m_edges.find(later);
        const bool alone = sides.size() == 2 && later.size() == 2 && !later.contains(PartSuccessors::kNone) &&
                           m_edges.at(sides).size() == 1 && found != after.m_edges.end() &&
                           found->second.size() == 1;
        return alone ? found->second.front() : PartSuccessors::kNone;
    }

private:
    using Sides = std::set<uint32_t>;
    std::vector<Sides> m_sides;
    std::map<Sides, Numbers> m_edges;
};

// Blends recreate some edges at which nothing has changed, and don't report it.
void findRemadeEdges(Numbers& edges, const Numbers& faces, const SubShapes& before, const SubShapes& after)
{
    if (std::find(edges.begin(), edges.end(), PartSuccessors::kNone) == edges.end())
        return;
    const EdgesBetween old(before), made(after);
    for (uint32_t index = 0; index < edges.size(); ++index)
        if (edges[index] == PartSuccessors::kNone)
            edges[index] = old.successorOf(index, faces, made);
}

Numbers successorsOf(Leaf leaf, const SubShapes& before, const SubShapes& after, const Successors& successors)
{
    const NumberedParts old(before, leaf), made(after, leaf);
    Numbers numbers;
    for (uint32_t index = 0; index < old.all().size(); ++index)
        numbers.push_back(successorOf(index, old, made, successors));
    return numbers;
}

} // namespace

void ShapeLog::note(const TopoDS_Shape& before, const TopoDS_Shape& after, const Successors& successors)
{
    m_changes.push_back(
        {before, after, successors, successors ? nullptr : std::make_shared<PartSuccessors>(), false});
}

const PartSuccessors& ShapeLog::partsOf(Change& change)
{
    if (!change.parts) {
        const SubShapes before(change.before), after(change.after);
        const Successors successors = std::exchange(change.successors, nullptr);
        const auto of = [&](Leaf leaf) { return successorsOf(leaf, before, after, successors); };
        const Numbers faces = of(Leaf::Face);
        Numbers edges = of(Leaf::Edge);
        findRemadeEdges(edges, faces, before, after);
        change.parts = std::make_shared<PartSuccessors>(faces, std::move(edges), of(Leaf::Vertex));
    }
    return *change.parts;
}

// A preview that was taken back is needed by nobody, unless somebody has followed it and wants to go back.
void ShapeLog::settle(bool committed)
{
    if (!committed)
        std::erase_if(m_changes, [](const Change& each) { return !each.settled && !each.parts; });
    for (Change& change : m_changes) {
        // The operation that made the shape holds much more than the numbers.
        if (!change.settled)
            partsOf(change);
        change.settled = true;
    }
    while (m_changes.size() > kMost)
        m_changes.pop_front();
}

std::shared_ptr<const PartSuccessors> ShapeLog::between(uint64_t before, uint64_t after)
{
    // Along the changes that lead on, or back, from what was reached so far.
    std::vector<std::pair<uint64_t, PartSuccessors>> reached{{before, {}}};
    std::set<uint64_t> seen{before};
    for (size_t next = 0; next < reached.size(); ++next) {
        const auto [revision, parts] = reached[next];
        if (revision == after)
            return std::make_shared<PartSuccessors>(parts);
        for (auto change = m_changes.rbegin(); change != m_changes.rend(); ++change) {
            const uint64_t from = revisionOf(change->before), to = revisionOf(change->after);
            if (from == revision && seen.insert(to).second)
                reached.emplace_back(to, parts.followedBy(partsOf(*change)));
            else if (to == revision && seen.insert(from).second)
                reached.emplace_back(from, parts.followedBy(partsOf(*change).inverse()));
        }
    }
    return nullptr;
}

} // namespace Vs::Kernel
