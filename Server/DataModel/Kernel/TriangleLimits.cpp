#include "Server/DataModel/Kernel/TriangleLimits.h"

#include "Server/DataModel/Kernel/Mesher.h"

#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

#include <array>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <xxhash.h>

namespace Vs::Kernel {

namespace {

constexpr size_t kMostTriangles = 2'000'000;
constexpr int kMostPasses = 60;

using Triangle = std::array<uint32_t, 3>;

/// A side by the places of its ends. Two faces that meet in it have vertices of their own there, at the same
/// places; both must split it, or a gap would open.
struct Side
{
    std::array<float, 6> ends;
    friend bool operator==(const Side&, const Side&) = default;
};

struct SideHash
{
    size_t operator()(const Side& side) const { return XXH3_64bits(side.ends.data(), sizeof side.ends); }
};

class Splitter
{
public:
    Splitter(BodyMesh& mesh, float length) : m_mesh(mesh), m_length(length) {}

    void run()
    {
        for (int pass = 0; pass < kMostPasses && m_mesh.triangles.size() / 3 < kMostTriangles; ++pass) {
            mark();
            if (m_marked.empty())
                return;
            spread();
            split();
            m_mesh.edgePoints.clear();
            m_mesh.edgeStarts.assign(1, 0);
        }
    }

private:
    size_t triangles() const { return m_mesh.triangles.size() / 3; }

    Triangle triangle(size_t i) const
    {
        return {m_mesh.triangles[3 * i], m_mesh.triangles[3 * i + 1], m_mesh.triangles[3 * i + 2]};
    }

    Side side(uint32_t a, uint32_t b) const
    {
        std::array<float, 3> p, q;
        for (int axis = 0; axis < 3; ++axis) {
            // Adding zero turns -0 into 0, which is the same place.
            p[axis] = m_mesh.positions[size_t(a) * 3 + axis] + 0.0f;
            q[axis] = m_mesh.positions[size_t(b) * 3 + axis] + 0.0f;
        }
        if (q < p)
            std::swap(p, q);
        return {{p[0], p[1], p[2], q[0], q[1], q[2]}};
    }

    float length(uint32_t a, uint32_t b) const
    {
        const float* p = &m_mesh.positions[size_t(a) * 3];
        const float* q = &m_mesh.positions[size_t(b) * 3];
        return std::hypot(q[0] - p[0], q[1] - p[1], q[2] - p[2]);
    }

    // The side that begins with this corner is the longest.
    int longest(const Triangle& t) const
    {
        int best = 0;
        float most = -1;
        for (int k = 0; k < 3; ++k)
            if (const float own = length(t[k], t[(k + 1) % 3]); own > most) {
                most = own;
                best = k;
            }
        return best;
    }

    void mark()
    {
        m_marked.clear();
        for (size_t i = 0; i < triangles(); ++i) {
            const Triangle t = triangle(i);
            for (int k = 0; k < 3; ++k)
                if (length(t[k], t[(k + 1) % 3]) > m_length)
                    m_marked.insert(side(t[k], t[(k + 1) % 3]));
        }
    }

    // A triangle that is split at all is split at its longest side: so no cut makes thinner triangles than
    // there were.
    void spread()
    {
        for (bool grown = true; grown;) {
            grown = false;
            for (size_t i = 0; i < triangles(); ++i) {
                const Triangle t = triangle(i);
                bool any = false;
                for (int k = 0; k < 3; ++k)
                    any |= m_marked.contains(side(t[k], t[(k + 1) % 3]));
                const int most = longest(t);
                if (any)
                    grown |= m_marked.insert(side(t[most], t[(most + 1) % 3])).second;
            }
        }
    }

    uint32_t middle(uint32_t a, uint32_t b)
    {
        const uint64_t key = uint64_t(std::min(a, b)) << 32 | std::max(a, b);
        const auto [entry, fresh] = m_middles.try_emplace(key, uint32_t(m_mesh.positions.size() / 3));
        if (!fresh)
            return entry->second;
        // From the lower place to the higher, so that both faces of a side get the very same number.
        const Side places = side(a, b);
        float normal[3], square = 0;
        for (int axis = 0; axis < 3; ++axis) {
            m_mesh.positions.push_back((places.ends[axis] + places.ends[3 + axis]) / 2);
            normal[axis] = m_mesh.normals[size_t(a) * 3 + axis] + m_mesh.normals[size_t(b) * 3 + axis];
            square += normal[axis] * normal[axis];
        }
        for (int axis = 0; axis < 3; ++axis)
            m_mesh.normals.push_back(square > 0 ? normal[axis] / std::sqrt(square)
                                                : m_mesh.normals[size_t(a) * 3 + axis]);
        return entry->second;
    }

    void split()
    {
        m_middles.clear();
        std::vector<uint32_t> made;
        made.reserve(m_mesh.triangles.size() * 2);
        const auto add = [&](uint32_t a, uint32_t b, uint32_t c) { made.insert(made.end(), {a, b, c}); };
        for (BodyMesh::Face& face : m_mesh.faces) {
            const uint32_t begin = face.firstTriangle, end = begin + face.triangleCount;
            face.firstTriangle = uint32_t(made.size() / 3);
            for (uint32_t i = begin; i < end; ++i) {
                const Triangle t = triangle(i);
                // Turned so that the longest side, which is split if any is, goes from a to b.
                const int most = longest(t);
                const uint32_t a = t[most], b = t[(most + 1) % 3], c = t[(most + 2) % 3];
                if (!m_marked.contains(side(a, b))) {
                    add(a, b, c);
                    continue;
                }
                const uint32_t ab = middle(a, b);
                if (m_marked.contains(side(b, c))) {
                    const uint32_t bc = middle(b, c);
                    add(ab, b, bc);
                    add(ab, bc, c);
                } else {
                    add(ab, b, c);
                }
                if (m_marked.contains(side(c, a))) {
                    const uint32_t ca = middle(c, a);
                    add(a, ab, ca);
                    add(ca, ab, c);
                } else {
                    add(a, ab, c);
                }
            }
            face.triangleCount = uint32_t(made.size() / 3) - face.firstTriangle;
        }
        m_mesh.triangles = std::move(made);
    }

    BodyMesh& m_mesh;
    float m_length;
    std::unordered_set<Side, SideHash> m_marked;
    std::unordered_map<uint64_t, uint32_t> m_middles;
};

// The triangles of one face of a mesh, in the face's own coordinates and sense.
Handle(Poly_Triangulation) triangulationOf(const BodyMesh& mesh, const BodyMesh::Face& run,
                                           const TopoDS_Face& face, const TopLoc_Location& location)
{
    std::unordered_map<uint32_t, int> nodeOf;
    std::vector<uint32_t> vertices;
    const size_t begin = size_t(run.firstTriangle) * 3, end = begin + size_t(run.triangleCount) * 3;
    for (size_t i = begin; i < end; ++i)
        if (nodeOf.try_emplace(mesh.triangles[i], int(vertices.size()) + 1).second)
            vertices.push_back(mesh.triangles[i]);
    const Handle(Poly_Triangulation) result =
        new Poly_Triangulation(int(vertices.size()), int(run.triangleCount), false);
    result->AddNormals();
    const gp_Trsf back = location.Inverted().Transformation();
    const bool reversed = face.Orientation() == TopAbs_REVERSED;
    for (size_t i = 0; i < vertices.size(); ++i) {
        const float* p = &mesh.positions[size_t(vertices[i]) * 3];
        const float* n = &mesh.normals[size_t(vertices[i]) * 3];
        const gp_Dir normal = gp_Dir(n[0], n[1], n[2]).Transformed(back);
        result->SetNode(int(i) + 1, gp_Pnt(p[0], p[1], p[2]).Transformed(back));
        result->SetNormal(int(i) + 1, reversed ? normal.Reversed() : normal);
    }
    const bool flip = reversed != back.IsNegative();
    for (size_t i = begin; i < end; i += 3) {
        const int a = nodeOf[mesh.triangles[i]], b = nodeOf[mesh.triangles[i + 1]],
                  c = nodeOf[mesh.triangles[i + 2]];
        result->SetTriangle(int((i - begin) / 3) + 1, flip ? Poly_Triangle(a, c, b) : Poly_Triangle(a, b, c));
    }
    return result;
}

bool asksForLimit(const TranslatorRefinement& refinement)
{
    return refinement.maximumEdgeLength < TranslatorRefinement{}.maximumEdgeLength;
}

} // namespace

void limitTriangles(BodyMesh& mesh, const TranslatorRefinement& refinement)
{
    if (!asksForLimit(refinement) || mesh.triangles.empty())
        return;
    const auto diagonal = float(mesh.bounds.low().distanceTo(mesh.bounds.high()));
    // A side in a thousand already makes millions of triangles of a large face.
    Splitter(mesh, std::max(refinement.maximumEdgeLength / 100, 1e-3f) * diagonal).run();
}

void limitTriangles(const TopoDS_Shape& shape, const TranslatorRefinement& refinement)
{
    if (!asksForLimit(refinement))
        return;
    BodyMesh mesh = extractMesh(shape, {});
    limitTriangles(mesh, refinement);
    size_t run = 0;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More() && run < mesh.faces.size(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& old = BRep_Tool::Triangulation(face, location);
        if (!old.IsNull() && old->NbTriangles() > 0)
            BRep_Builder().UpdateFace(face, triangulationOf(mesh, mesh.faces[run++], face, location));
    }
}

} // namespace Vs::Kernel
