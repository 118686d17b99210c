#include "Server/DataModel/Exchange/MeshExport.h"

#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Exchange/NewFile.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Server/Types/LengthUnit.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <stdexcept>
#include <vector>

namespace Vs::Exchange {

namespace {

constexpr size_t kTriangleSize = 50; // 12 floats and two bytes that mean nothing
constexpr size_t kHeaderSize = 84;
constexpr size_t kBufferSize = 1 << 18;

struct Occurrence
{
    const Body* body;
    GkMatrix3d placement;
};

void collect(const Component& component, const GkMatrix3d& parent, std::vector<Occurrence>& result)
{
    const GkMatrix3d placement = parent * component.placement;
    if (component.body)
        result.push_back({component.body.get(), placement});
    for (const auto& child : component.children)
        collect(*child, placement, result);
}

std::shared_ptr<const BodyMesh> meshOf(const Body& body, const TranslatorRefinement& refinement)
{
    const auto* own = cast<ModelBody>(&body);
    return own && refinement != TranslatorRefinement{} ? own->meshFor(refinement) : body.mesh();
}

// Packs one occurrence's triangles; the normals come from the corners, as the format wants it.
void pack(const BodyMesh& mesh, const GkMatrix3d& placement, std::vector<char>& bytes)
{
    std::vector<float> points(mesh.positions.size());
    for (size_t i = 0; i + 3 <= points.size(); i += 3) {
        const GkPoint3d p =
            placement * GkPoint3d(mesh.positions[i], mesh.positions[i + 1], mesh.positions[i + 2]);
        points[i] = float(p.x);
        points[i + 1] = float(p.y);
        points[i + 2] = float(p.z);
    }
    const bool mirrored = placement.det() < 0;
    bytes.resize(mesh.triangles.size() / 3 * kTriangleSize);
    char* target = bytes.data();
    for (size_t i = 0; i + 3 <= mesh.triangles.size(); i += 3, target += kTriangleSize) {
        const float* a = &points[size_t(mesh.triangles[i]) * 3];
        const float* b = &points[size_t(mesh.triangles[i + (mirrored ? 2 : 1)]) * 3];
        const float* c = &points[size_t(mesh.triangles[i + (mirrored ? 1 : 2)]) * 3];
        const float u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        const float v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
        float record[12] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
        const float length = std::sqrt(record[0] * record[0] + record[1] * record[1] + record[2] * record[2]);
        if (length > 0)
            for (int k = 0; k < 3; ++k)
                record[k] /= length;
        std::memcpy(record + 3, a, 3 * sizeof(float));
        std::memcpy(record + 6, b, 3 * sizeof(float));
        std::memcpy(record + 9, c, 3 * sizeof(float));
        std::memcpy(target, record, sizeof record);
        target[48] = target[49] = 0;
    }
}

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

bool writeStl(const Component& root, const std::wstring& path, const TranslatorRefinement& refinement,
              const LengthUnit& unit, const std::function<bool(double)>& watch, Status& status)
{
    const auto fault = [&](const std::wstring& cause) {
        status.addError(L"\"" + path + L"\" can't be written: " + cause + L".");
        return false;
    };
    try {
        std::vector<Occurrence> occurrences;
        const double scale = 1 / unit.millimetres;
        collect(root, GkMatrix3d::scaling(scale), occurrences);
        std::map<const Body*, std::shared_ptr<const BodyMesh>> meshes;
        uint64_t triangles = 0;
        for (size_t i = 0; i < occurrences.size(); ++i) {
            auto& mesh = meshes[occurrences[i].body];
            if (!mesh && (mesh = meshOf(*occurrences[i].body, refinement)) && watch &&
                !watch(0.7 * double(i) / double(occurrences.size())))
                return false;
            triangles += mesh ? mesh->triangles.size() / 3 : 0;
        }
        if (triangles == 0)
            return fault(L"there is nothing in the model that has a surface");
        if (triangles > UINT32_MAX)
            return fault(L"the model has more triangles than the format can count");

        NewFile file(path);
        const std::unique_ptr<std::FILE, FileCloser> stream(std::fopen(file.scratch().c_str(), "wbe"));
        if (stream)
            std::setvbuf(stream.get(), nullptr, _IOFBF, kBufferSize);
        char header[kHeaderSize] = {};
        std::snprintf(header, sizeof header, "Quillet, %ls", unit.name);
        const auto count = static_cast<uint32_t>(triangles);
        std::memcpy(header + 80, &count, sizeof count);
        if (!stream || std::fwrite(header, sizeof header, 1, stream.get()) != 1)
            return fault(Strings::widen(std::strerror(errno)));
        std::vector<char> bytes;
        for (size_t i = 0; i < occurrences.size(); ++i) {
            const auto& mesh = meshes[occurrences[i].body];
            if (!mesh || mesh->triangles.empty())
                continue;
            pack(*mesh, occurrences[i].placement, bytes);
            if (std::fwrite(bytes.data(), bytes.size(), 1, stream.get()) != 1)
                return fault(Strings::widen(std::strerror(errno)));
            if (watch && !watch(0.7 + 0.3 * double(i) / double(occurrences.size())))
                return false;
        }
        if (std::fflush(stream.get()) != 0)
            return fault(Strings::widen(std::strerror(errno)));
        file.commit();
        return true;
    } catch (const std::runtime_error& error) {
        return fault(Strings::widen(error.what()));
    }
}

} // namespace Vs::Exchange
