#include "Server/Translate/StlMesh.h"

#include "Server/Translate/Reading.h"
#include "Server/Translate/TriangleMesh.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace Vs::Translate {

namespace {

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
                    fail("\"" + std::string(text.substr(0, 40)) + "\" is not a coordinate");
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

Handle(Poly_Triangulation) triangulate(const StlSolid& solid, BodyMesh& mesh)
{
    const JoinedTriangles joined = joinTriangles(solid.corners);
    Handle(Poly_Triangulation) triangulation =
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
