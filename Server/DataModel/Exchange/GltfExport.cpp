#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Exchange/ExportedMeshes.h"

#include <boost/filesystem/path.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <map>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace Vs::Exchange {

namespace {

constexpr double kMillimetresInMetre = 1000;
constexpr int kFloat = 5126, kUnsigned = 5125;                  // componentType
constexpr int kVertexNumbers = 34962, kTriangleNumbers = 34963; // target

/// A JSON list that is put together from the texts of its elements.
class JsonList
{
public:
    /// Returns the element's index.
    size_t add(const std::string& element)
    {
        m_text += (m_count == 0 ? "" : ",\n") + element;
        return m_count++;
    }
    std::string text() const { return "[" + m_text + "]"; }
    size_t count() const { return m_count; }

private:
    std::string m_text;
    size_t m_count = 0;
};

std::string quoted(const std::wstring& words)
{
    std::string text = "\"";
    for (const char c : Strings::narrow(words)) {
        if (c == '"' || c == '\\')
            text += '\\';
        if (static_cast<unsigned char>(c) >= ' ') {
            text += c;
        } else {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04x", unsigned(c));
            text += code;
        }
    }
    return text + '"';
}

std::string numberOf(auto number)
{
    char digits[40];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

template <class Numbers>
std::string listOf(const Numbers& numbers)
{
    std::string text = "[";
    for (const auto number : numbers)
        text.append(text.size() > 1 ? "," : "").append(numberOf(number));
    return text + ']';
}

template <class Numbers>
std::string_view bytesOf(const Numbers& numbers)
{
    return {reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof numbers[0]};
}

std::string base64(std::string_view bytes)
{
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t three = 0;
        for (size_t k = i; k < i + 3; ++k)
            three = three << 8 | (k < bytes.size() ? static_cast<unsigned char>(bytes[k]) : 0u);
        for (int digit = 0; digit < 4; ++digit)
            text += i + size_t(digit) <= bytes.size() ? kDigits[three >> (18 - 6 * digit) & 63] : '=';
    }
    return text;
}

class Gltf
{
public:
    static constexpr const char* kEnd = "}]}";

    explicit Gltf(const ExportedMeshes& meshes) : m_meshes(meshes), m_turn(yUpwards(kMillimetresInMetre)) {}

    /// Adds what is below a component as it is.
    void addTree(const Component& root)
    {
        const std::optional<Colour> inherited = root.colour;
        std::vector<size_t> roots;
        for (const auto& child : root.children)
            roots.push_back(addNode(*child, root.placement * child->placement, inherited));
        m_scene = listOf(roots);
    }

    /// Adds all occurrences as one part.
    void addOne(const std::wstring& name)
    {
        ColourGroups all;
        for (const Occurrence& occurrence : m_meshes.occurrences())
            if (const BodyMesh* mesh = m_meshes.of(occurrence.body))
                all.add(*mesh, occurrence.colour, m_turn * occurrence.placement);
        const size_t mesh = addMesh(name, all);
        m_scene = listOf(
            std::array{m_nodes.add("{\"name\":" + quoted(name) + ",\"mesh\":" + std::to_string(mesh) + '}')});
    }

    std::string numbers()
    {
        return std::exchange(m_positions, {}) + std::exchange(m_normals, {}) + std::exchange(m_triangles, {});
    }

    /// All but `kEnd`, until which the positions of the numbers in the buffer may still be set. Call before
    /// `numbers`.
    std::string text() const
    {
        size_t start = 0;
        const auto view = [&](const std::string& bytes, const std::string& more) {
            std::string described = "{\"buffer\":0,\"byteOffset\":" + std::to_string(start) +
                                    ",\"byteLength\":" + std::to_string(bytes.size()) + more + '}';
            start += bytes.size();
            return described;
        };
        const std::string ofVertices = ",\"byteStride\":12,\"target\":" + std::to_string(kVertexNumbers);
        JsonList views;
        views.add(view(m_positions, ofVertices));
        views.add(view(m_normals, ofVertices));
        views.add(view(m_triangles, ",\"target\":" + std::to_string(kTriangleNumbers)));
        return "{\"asset\":{\"version\":\"2.0\",\"generator\":\"Quillet\"},\n\"scene\":0,\n"
               "\"scenes\":[{\"nodes\":" +
               m_scene + "}],\n\"nodes\":" + m_nodes.text() + ",\n\"meshes\":" + m_meshTexts.text() +
               ",\n\"materials\":" + m_materials.text() + ",\n\"accessors\":" + m_accessors.text() +
               ",\n\"bufferViews\":" + views.text() +
               ",\n\"buffers\":[{\"byteLength\":" + std::to_string(start);
    }

private:
    enum View { Positions, Normals, Triangles };

    size_t addNode(const Component& component, const GkMatrix3d& placement,
                   const std::optional<Colour>& inherited)
    {
        const std::optional<Colour> colour = component.colour ? component.colour : inherited;
        std::vector<size_t> children;
        for (const auto& child : component.children)
            children.push_back(addNode(*child, child->placement, colour));
        std::string node = "{\"name\":" + quoted(nameOf(component));
        if (const BodyMesh* mesh = component.body ? m_meshes.of(component.body.get()) : nullptr)
            node += ",\"mesh\":" + std::to_string(meshOf(*component.body, *mesh, colour));
        if (!placement.isEqualTo({})) {
            // The placement as it is among the turned coordinates.
            const GkMatrix3d turned = m_turn * placement * m_turn.inverse();
            std::array<double, 16> columns;
            for (int i = 0; i < 16; ++i)
                columns[size_t(i)] = turned.entry[i % 4][i / 4];
            node += ",\"matrix\":" + listOf(columns);
        }
        if (!children.empty())
            node += ",\"children\":" + listOf(children);
        return m_nodes.add(node + '}');
    }

    size_t meshOf(const Body& body, const BodyMesh& mesh, const std::optional<Colour>& own)
    {
        const Colour plain = own.value_or(body.colour());
        const auto [known, fresh] =
            m_known.try_emplace({&body, plain.r, plain.g, plain.b, plain.a}, m_meshTexts.count());
        if (fresh) {
            ColourGroups groups;
            groups.add(mesh, plain, m_turn);
            addMesh(body.name(), groups);
        }
        return known->second;
    }

    size_t addMesh(const std::wstring& name, const ColourGroups& parts)
    {
        JsonList primitives;
        for (const ColourGroups::Group& group : parts.groups()) {
            const size_t positions = addNumbers(m_positions, Positions, group.positions, boundsOf(group));
            const size_t normals = addNumbers(m_normals, Normals, group.normals, "");
            const size_t triangles = addNumbers(m_triangles, Triangles, group.triangles, "");
            primitives.add("{\"attributes\":{\"POSITION\":" + std::to_string(positions) + ",\"NORMAL\":" +
                           std::to_string(normals) + "},\"indices\":" + std::to_string(triangles) +
                           ",\"material\":" + std::to_string(materialOf(group.look)) + '}');
        }
        return m_meshTexts.add("{\"name\":" + quoted(name) + ",\"primitives\":" + primitives.text() + '}');
    }

    template <class Numbers>
    size_t addNumbers(std::string& bytes, View view, const Numbers& numbers, const std::string& more)
    {
        const bool vertices = view != Triangles;
        const std::string accessor =
            "{\"bufferView\":" + std::to_string(view) + ",\"byteOffset\":" + std::to_string(bytes.size()) +
            ",\"componentType\":" + std::to_string(vertices ? kFloat : kUnsigned) +
            ",\"count\":" + std::to_string(vertices ? numbers.size() / 3 : numbers.size()) +
            ",\"type\":" + (vertices ? "\"VEC3\"" : "\"SCALAR\"") + more + '}';
        bytes += bytesOf(numbers);
        return m_accessors.add(accessor);
    }

    static std::string boundsOf(const ColourGroups::Group& group)
    {
        std::array<float, 3> low, high;
        low.fill(std::numeric_limits<float>::max());
        high.fill(std::numeric_limits<float>::lowest());
        for (size_t i = 0; i < group.positions.size(); ++i) {
            low[i % 3] = std::min(low[i % 3], group.positions[i]);
            high[i % 3] = std::max(high[i % 3], group.positions[i]);
        }
        return ",\"min\":" + listOf(low) + ",\"max\":" + listOf(high);
    }

    size_t materialOf(const Look& look)
    {
        const auto known = std::find(m_looks.begin(), m_looks.end(), look);
        if (known != m_looks.end())
            return size_t(known - m_looks.begin());
        m_looks.push_back(look);
        const Finish& finish = look.finish;
        const Colour& colour = look.colour;
        std::string text = "{\"pbrMetallicRoughness\":{\"baseColorFactor\":" +
                           listOf(std::array{colour.r, colour.g, colour.b, colour.a});
        // Without a material, it is a paint.
        text += ",\"metallicFactor\":" + numberOf(finish.isKnown ? finish.metallic : 0);
        if (finish.isKnown)
            text += ",\"roughnessFactor\":" + numberOf(finish.roughness);
        text += '}';
        if (finish.isKnown && finish.emissive != std::array{0.0f, 0.0f, 0.0f})
            text += ",\"emissiveFactor\":" + listOf(finish.emissive);
        if (!finish.isOneSided())
            text += ",\"doubleSided\":true";
        if (colour.a < 1 || (finish.isKnown && finish.alpha == Finish::Alpha::Blend))
            text += ",\"alphaMode\":\"BLEND\"";
        else if (finish.isKnown && finish.alpha == Finish::Alpha::Mask)
            text += ",\"alphaMode\":\"MASK\",\"alphaCutoff\":" + numberOf(finish.alphaCutoff);
        return m_materials.add(text + '}');
    }

    const ExportedMeshes& m_meshes;
    GkMatrix3d m_turn;
    std::map<std::tuple<const Body*, float, float, float, float>, size_t> m_known;
    std::vector<Look> m_looks;
    JsonList m_nodes, m_meshTexts, m_materials, m_accessors;
    std::string m_scene;
    std::string m_positions, m_normals, m_triangles;
};

// One of the two pieces of a GLB file: its length, its kind and its bytes, filled up to a multiple of four.
void writePiece(ExportFile& file, const char (&kind)[5], std::string bytes, char filler)
{
    bytes.resize((bytes.size() + 3) / 4 * 4, filler);
    const uint32_t length = uint32_t(bytes.size());
    file.write(bytesOf(std::array{length}));
    file.write({kind, 4});
    file.write(bytes);
}

void writeGlb(ExportFile& file, const std::string& text, std::string numbers)
{
    constexpr uint64_t kHeaders = 12 + 2 * 8;
    const uint64_t size = kHeaders + (text.size() + 3) / 4 * 4 + numbers.size();
    if (size > UINT32_MAX)
        throw std::runtime_error("the model has more triangles than the format can count");
    file.write("glTF");
    file.write(bytesOf(std::array{uint32_t(2), uint32_t(size)}));
    writePiece(file, "JSON", text, ' ');
    writePiece(file, "BIN\0", std::move(numbers), '\0');
}

} // namespace

bool writeGltf(const MeshExport& job, bool binary, Status& status)
{
    return exported(job, status, [&] {
        ExportedMeshes meshes;
        if (!meshes.make(job))
            return false;
        ExportFile file(job.path);
        Gltf gltf(meshes);
        if (job.combine)
            gltf.addOne(boost::filesystem::path(job.path).stem().wstring());
        else
            gltf.addTree(job.root);
        if (!job.goOn(0.85))
            return false;
        const std::string text = gltf.text();
        if (binary) {
            writeGlb(file, text + Gltf::kEnd, gltf.numbers());
        } else {
            // Of two files, one could be lost or replaced alone.
            file.write(text + ",\"uri\":\"data:application/octet-stream;base64,");
            file.write(base64(gltf.numbers()));
            file.write(std::string("\"") + Gltf::kEnd);
        }
        file.commit();
        return true;
    });
}

} // namespace Vs::Exchange
