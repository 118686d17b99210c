#include "Server/Translate/StlMesh.h"

#include "Server/Translate/Readers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <unordered_map>
#include <xxhash.h>

namespace Vs::Translate {

namespace {

using Vertex = std::array<float, 3>;

struct VertexHash
{
    size_t operator()(const Vertex& v) const { return XXH3_64bits(v.data(), sizeof v); }
};

constexpr float kSmoothCosine = 0.866f; // 30 degrees

bool isBinary(std::string_view bytes)
{
    uint32_t triangles;
    if (bytes.size() < 84)
        return false;
    std::memcpy(&triangles, bytes.data() + 80, sizeof triangles);
    return bytes.size() == 84 + uint64_t(triangles) * 50;
}

bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

class AsciiStl
{
public:
    AsciiStl(std::string_view text, Reporter& reporter) : m_text(text), m_reporter(reporter) {}

    std::vector<StlSolid> parse(size_t& skipped)
    {
        std::vector<StlSolid> solids;
        for (std::string_view word = next(); !word.empty(); word = next()) {
            if (is(word, "solid"))
                solids.push_back({restOfLine(), {}});
            else if (is(word, "endsolid"))
                restOfLine();
            else if (is(word, "facet") && !solids.empty())
                facet(solids.back(), skipped);
            else
                fail("\"" + std::string(word.substr(0, 40)) + "\" is out of place");
        }
        return solids;
    }

private:
    void facet(StlSolid& solid, size_t& skipped)
    {
        std::vector<float> corners;
        bool usable = true;
        for (std::string_view word = next(); !is(word, "endfacet"); word = next()) {
            if (word.empty())
                fail("it ends within a facet");
            if (!is(word, "vertex"))
                continue; // normal, outer loop, endloop: nothing that we use
            for (int i = 0; i < 3; ++i) {
                const std::string_view text = next();
                float value = 0;
                const char* begin = text.data() + (text.starts_with('+') ? 1 : 0);
                const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
                if (error != std::errc() && error != std::errc::result_out_of_range)
                    fail("\"" + std::string(text.substr(0, 40)) + "\" is no coordinate");
                usable = usable && std::isfinite(value);
                corners.push_back(value);
            }
        }
        if (corners.size() != 9)
            fail("a facet hasn't three corners");
        if (usable)
            solid.corners.insert(solid.corners.end(), corners.begin(), corners.end());
        else
            ++skipped;
        m_reporter.progress(double(m_at) / double(m_text.size()));
    }

    std::string_view next()
    {
        while (m_at < m_text.size() && isSpace(m_text[m_at]))
            m_line += m_text[m_at++] == '\n';
        const size_t begin = m_at;
        while (m_at < m_text.size() && !isSpace(m_text[m_at]))
            ++m_at;
        return m_text.substr(begin, m_at - begin);
    }

    std::string restOfLine()
    {
        const size_t end = std::min(m_text.find('\n', m_at), m_text.size());
        std::string_view rest = m_text.substr(m_at, end - m_at);
        m_at = end;
        while (!rest.empty() && isSpace(rest.front()))
            rest.remove_prefix(1);
        while (!rest.empty() && isSpace(rest.back()))
            rest.remove_suffix(1);
        return std::string(rest.substr(0, 200));
    }

    static bool is(std::string_view word, std::string_view keyword)
    {
        return std::equal(word.begin(), word.end(), keyword.begin(), keyword.end(),
                          [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
    }

    [[noreturn]] void fail(const std::string& what) const
    {
        throw Unreadable("isn't a valid STL file: line " + std::to_string(m_line) + ": " + what);
    }

    std::string_view m_text;
    Reporter& m_reporter;
    size_t m_at = 0;
    size_t m_line = 1;
};

std::vector<StlSolid> parseBinary(std::string_view bytes, size_t& skipped)
{
    uint32_t triangles;
    std::memcpy(&triangles, bytes.data() + 80, sizeof triangles);
    StlSolid solid;
    solid.corners.reserve(size_t(triangles) * 9);
    for (uint32_t i = 0; i < triangles; ++i) {
        float corners[9];
        std::memcpy(corners, bytes.data() + 84 + size_t(i) * 50 + 12, sizeof corners);
        if (std::all_of(corners, corners + 9, [](float value) { return std::isfinite(value); }))
            solid.corners.insert(solid.corners.end(), corners, corners + 9);
        else
            ++skipped;
    }
    return {std::move(solid)};
}

using Normal = std::array<float, 3>;

Normal areaVector(const float* a, const float* b, const float* c)
{
    const double ux = double(b[0]) - a[0], uy = double(b[1]) - a[1], uz = double(b[2]) - a[2];
    const double vx = double(c[0]) - a[0], vy = double(c[1]) - a[1], vz = double(c[2]) - a[2];
    return {float(uy * vz - uz * vy), float(uz * vx - ux * vz), float(ux * vy - uy * vx)};
}

Normal unit(const Normal& n)
{
    const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    return length > 0 ? Normal{n[0] / length, n[1] / length, n[2] / length} : Normal{0, 0, 1};
}

float dot(const Normal& a, const Normal& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// What joined triangles look like: nodes, and for each triangle its three nodes and its area vector.
struct Joined
{
    std::vector<Vertex> nodes;
    std::vector<std::array<uint32_t, 3>> triangles;
    std::vector<Normal> areas;
};

Joined join(const StlSolid& solid)
{
    Joined joined;
    std::unordered_map<Vertex, uint32_t, VertexHash> index;
    index.reserve(solid.corners.size() / 12);
    for (size_t i = 0; i + 9 <= solid.corners.size(); i += 9) {
        std::array<uint32_t, 3> triangle;
        for (int k = 0; k < 3; ++k) {
            const float* p = &solid.corners[i + 3 * k];
            // Adding zero turns -0 into 0, which is the same place.
            const Vertex vertex{p[0] + 0.0f, p[1] + 0.0f, p[2] + 0.0f};
            const auto [entry, fresh] = index.try_emplace(vertex, uint32_t(joined.nodes.size()));
            if (fresh)
                joined.nodes.push_back(vertex);
            triangle[k] = entry->second;
        }
        joined.triangles.push_back(triangle);
        joined.areas.push_back(areaVector(&solid.corners[i], &solid.corners[i + 3], &solid.corners[i + 6]));
    }
    return joined;
}

// Gives each corner the mean normal of the triangles around its node that lie nearly in its own plane;
// corners of one node with one normal become one vertex.
void addVertices(const Joined& joined, BodyMesh& mesh)
{
    std::vector<uint32_t> firstCorner(joined.nodes.size() + 1, 0);
    for (const auto& triangle : joined.triangles)
        for (const uint32_t node : triangle)
            ++firstCorner[node + 1];
    for (size_t i = 1; i < firstCorner.size(); ++i)
        firstCorner[i] += firstCorner[i - 1];
    std::vector<uint32_t> corners(joined.triangles.size() * 3);
    std::vector<uint32_t> fill(firstCorner.begin(), firstCorner.end() - 1);
    for (uint32_t t = 0; t < joined.triangles.size(); ++t)
        for (int k = 0; k < 3; ++k)
            corners[fill[joined.triangles[t][k]]++] = t * 3 + k;

    mesh.triangles.resize(corners.size());
    // A node of very many triangles is a fan; comparing each with each would take for ever.
    constexpr uint32_t kMostCompared = 64;
    for (uint32_t node = 0; node < joined.nodes.size(); ++node) {
        const uint32_t begin = firstCorner[node], end = firstCorner[node + 1];
        std::vector<std::pair<Normal, uint32_t>> made;
        for (uint32_t i = begin; i < end; ++i) {
            const Normal own = unit(joined.areas[corners[i] / 3]);
            Normal sum{};
            const uint32_t from = end - begin > kMostCompared ? i : begin;
            const uint32_t to = end - begin > kMostCompared ? i + 1 : end;
            for (uint32_t k = from; k < to; ++k) {
                const Normal& other = joined.areas[corners[k] / 3];
                if (dot(own, unit(other)) >= kSmoothCosine)
                    for (int axis = 0; axis < 3; ++axis)
                        sum[axis] += other[axis];
            }
            const Normal normal = unit(sum);
            auto same = std::find_if(made.begin(), made.end(),
                                     [&](const auto& entry) { return dot(entry.first, normal) > 0.9999f; });
            if (same == made.end()) {
                made.emplace_back(normal, uint32_t(mesh.positions.size() / 3));
                same = made.end() - 1;
                mesh.positions.insert(mesh.positions.end(), joined.nodes[node].begin(),
                                      joined.nodes[node].end());
                mesh.normals.insert(mesh.normals.end(), normal.begin(), normal.end());
            }
            mesh.triangles[corners[i]] = same->second;
        }
        mesh.bounds.add({joined.nodes[node][0], joined.nodes[node][1], joined.nodes[node][2]});
    }
}

// A line wherever two triangles meet at an angle, or where a triangle has no neighbour.
void addEdgeLines(const Joined& joined, BodyMesh& mesh)
{
    struct Side
    {
        uint32_t low, high, triangle;
    };
    std::vector<Side> sides;
    sides.reserve(joined.triangles.size() * 3);
    for (uint32_t t = 0; t < joined.triangles.size(); ++t)
        for (int k = 0; k < 3; ++k) {
            const auto [low, high] = std::minmax(joined.triangles[t][k], joined.triangles[t][(k + 1) % 3]);
            if (low != high)
                sides.push_back({low, high, t});
        }
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) {
        return std::tie(a.low, a.high, a.triangle) < std::tie(b.low, b.high, b.triangle);
    });
    for (size_t i = 0; i < sides.size();) {
        size_t end = i + 1;
        while (end < sides.size() && sides[end].low == sides[i].low && sides[end].high == sides[i].high)
            ++end;
        const bool smooth = end - i == 2 && dot(unit(joined.areas[sides[i].triangle]),
                                                unit(joined.areas[sides[i + 1].triangle])) >= kSmoothCosine;
        if (!smooth) {
            mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
            for (const uint32_t node : {sides[i].low, sides[i].high})
                mesh.edgePoints.insert(mesh.edgePoints.end(), joined.nodes[node].begin(),
                                       joined.nodes[node].end());
        }
        i = end;
    }
    mesh.edgeStarts.push_back(uint32_t(mesh.edgePoints.size() / 3));
}

} // namespace

std::vector<StlSolid> parseStl(std::string_view bytes, Reporter& reporter, std::vector<std::string>& warnings)
{
    size_t skipped = 0;
    auto solids = isBinary(bytes) ? parseBinary(bytes, skipped) : AsciiStl(bytes, reporter).parse(skipped);
    if (skipped > 0)
        warnings.push_back("has " + std::to_string(skipped) +
                           " triangles with impossible coordinates, left out");
    return solids;
}

Handle(Poly_Triangulation) joinTriangles(const StlSolid& solid, BodyMesh& mesh)
{
    const Joined joined = join(solid);
    const Handle(Poly_Triangulation) triangulation =
        new Poly_Triangulation(int(joined.nodes.size()), int(joined.triangles.size()), false);
    for (size_t i = 0; i < joined.nodes.size(); ++i)
        triangulation->SetNode(int(i) + 1,
                               gp_Pnt(joined.nodes[i][0], joined.nodes[i][1], joined.nodes[i][2]));
    for (size_t i = 0; i < joined.triangles.size(); ++i) {
        const auto& [a, b, c] = joined.triangles[i];
        triangulation->SetTriangle(int(i) + 1, Poly_Triangle(int(a) + 1, int(b) + 1, int(c) + 1));
    }
    addVertices(joined, mesh);
    addEdgeLines(joined, mesh);
    mesh.faces.push_back({0, uint32_t(joined.triangles.size()), -1});
    return triangulation;
}

} // namespace Vs::Translate
