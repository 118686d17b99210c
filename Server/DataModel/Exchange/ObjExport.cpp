#include "Server/Base/Strings.h"
#include "Server/DataModel/Exchange/ExportedMeshes.h"
#include "Server/Types/LengthUnit.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace Vs::Exchange {

namespace {

void addNumber(std::string& text, auto number)
{
    char digits[40];
    text += ' ';
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

// A name ends at the end of its line.
std::string oneLine(const std::wstring& name)
{
    std::string text = Strings::narrow(name);
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return text.find_first_not_of(' ') == std::string::npos ? "part" : text;
}

// By this comment line, a later export of the same file recognises its colours.
std::string signatureOf(const boost::filesystem::path& file)
{
    return "# The colours of " + oneLine(file.filename().wstring()) + ", written by Quillet";
}

// Beside the file, under its name; but a file of colours that somebody else wrote, or that is another
// model's, stays as it is.
boost::filesystem::path colourFileOf(const boost::filesystem::path& file)
{
    const std::string own = signatureOf(file);
    boost::filesystem::path candidate = file;
    candidate.replace_extension(".mtl");
    boost::system::error_code error;
    for (int number = 2; boost::filesystem::exists(candidate, error); ++number) {
        std::string line;
        // Opening must not block under such a name.
        if (boost::filesystem::is_regular_file(candidate, error)) {
            boost::filesystem::ifstream stream(candidate);
            if (std::getline(stream, line) && line == own)
                break;
        }
        candidate = file.parent_path() / (file.stem().string() + '-' + std::to_string(number) + ".mtl");
    }
    return candidate;
}

// The format's colours are in screen values, ours are linear.
float screenValue(float linear)
{
    return linear <= 0.0031308f ? linear * 12.92f : 1.055f * std::pow(linear, 1 / 2.4f) - 0.055f;
}

class ObjText
{
public:
    explicit ObjText(const std::string& library) : m_text("mtllib " + library + "\n") {}

    void add(const std::string& name, const ColourGroups& parts)
    {
        m_text += "g " + unusedName(name) + '\n';
        for (const ColourGroups::Group& group : parts.groups())
            add(group);
    }

    /// What was added since the last call.
    std::string take() { return std::exchange(m_text, {}); }

    std::string materials(const std::string& signature) const
    {
        std::string text = signature + '\n';
        for (size_t i = 0; i < m_looks.size(); ++i) {
            const Colour& colour = m_looks[i].colour;
            text += "\nnewmtl " + nameOfColour(i);
            addColour(text, "Kd", {colour.r, colour.g, colour.b});
            text += "\nd";
            addNumber(text, colour.a);
            text += '\n';
            if (m_looks[i].finish.isKnown)
                addFinish(text, colour, m_looks[i].finish);
        }
        return text;
    }

private:
    // To a reader, equal names mean the same group.
    std::string unusedName(const std::string& name)
    {
        std::string unused = name;
        for (unsigned& number = m_uses[name]; !m_names.insert(unused).second;)
            unused = name + '_' + std::to_string(++number + 1);
        return unused;
    }

    static void addColour(std::string& text, const char* kind, const std::array<float, 3>& linear)
    {
        text += '\n';
        text += kind;
        for (const float value : linear)
            addNumber(text, screenValue(value));
    }

    // What mirrors and how sharply, for readers of the old form; metal and roughness themselves for those
    // that know them.
    static void addFinish(std::string& text, const Colour& colour, const Finish& finish)
    {
        constexpr float kMirroredByPaint = 0.04f, kSharpest = 1000;
        std::array<float, 3> mirrored{colour.r, colour.g, colour.b};
        for (float& value : mirrored)
            value = kMirroredByPaint + (value - kMirroredByPaint) * finish.metallic;
        text.pop_back();
        addColour(text, "Ks", mirrored);
        const float width = std::max(finish.roughness * finish.roughness, 1e-3f);
        text += "\nNs";
        addNumber(text, std::clamp(2 / (width * width) - 2, 0.0f, kSharpest));
        addColour(text, "Ke", finish.emissive);
        text += "\nPr";
        addNumber(text, finish.roughness);
        text += "\nPm";
        addNumber(text, finish.metallic);
        text += '\n';
    }

    static std::string nameOfColour(size_t index) { return "colour" + std::to_string(index + 1); }

    void add(const ColourGroups::Group& group)
    {
        const auto known = std::find(m_looks.begin(), m_looks.end(), group.look);
        const size_t colour = size_t(known - m_looks.begin());
        if (known == m_looks.end())
            m_looks.push_back(group.look);
        for (size_t i = 0; i < group.positions.size(); i += 3) {
            m_text += 'v';
            for (size_t k = i; k < i + 3; ++k)
                addNumber(m_text, group.positions[k]);
            m_text += "\nvn";
            for (size_t k = i; k < i + 3; ++k)
                addNumber(m_text, group.normals[k]);
            m_text += '\n';
        }
        m_text += "usemtl " + nameOfColour(colour) + '\n';
        for (size_t i = 0; i < group.triangles.size(); i += 3) {
            m_text += 'f';
            for (size_t k = i; k < i + 3; ++k) {
                // Counted from one, over the whole file; each vertex has its own normal.
                const uint64_t index = m_vertices + group.triangles[k] + 1;
                addNumber(m_text, index);
                m_text += "//";
                m_text += std::to_string(index);
            }
            m_text += '\n';
        }
        m_vertices += group.positions.size() / 3;
    }

    std::string m_text;
    std::vector<Look> m_looks;
    uint64_t m_vertices = 0;
    std::unordered_set<std::string> m_names;
    std::unordered_map<std::string, unsigned> m_uses; ///< How many others had the name before.
};

} // namespace

bool writeObj(const MeshExport& job, Status& status)
{
    return exported(job, status, [&] {
        ExportedMeshes meshes;
        if (!meshes.make(job))
            return false;
        const boost::filesystem::path path(job.path);
        const boost::filesystem::path library = colourFileOf(path);
        ExportFile file(job.path);
        ObjText text(library.filename().string());
        const GkMatrix3d turn = towards(job, UpAxis::Y);
        const auto& occurrences = meshes.occurrences();
        ColourGroups all;
        for (size_t i = 0; i < occurrences.size(); ++i) {
            const BodyMesh* mesh = meshes.of(occurrences[i].body);
            if (!mesh)
                continue;
            if (job.combine) {
                all.add(*mesh, occurrences[i].colour, turn * occurrences[i].placement);
            } else {
                ColourGroups own;
                own.add(*mesh, occurrences[i].colour, turn * occurrences[i].placement);
                text.add(oneLine(occurrences[i].name), own);
                file.write(text.take());
            }
            if (!job.goOn(ExportedMeshes::kShare +
                          (1 - ExportedMeshes::kShare) * double(i) / double(occurrences.size())))
                return false;
        }
        if (job.combine)
            text.add(oneLine(path.stem().wstring()), all);
        file.write(text.take());
        // The colours first, so that the file never refers to something missing.
        ExportFile colours(library.wstring());
        colours.write(text.materials(signatureOf(path)));
        colours.commit();
        file.commit();
        return true;
    });
}

} // namespace Vs::Exchange
