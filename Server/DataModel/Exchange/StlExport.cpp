#include "Server/DataModel/Exchange/ExportedMeshes.h"
#include "Server/Types/LengthUnit.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace Vs::Exchange {

namespace {

constexpr size_t kTriangleSize = 50; // 12 floats and two unused bytes
constexpr size_t kHeaderSize = 84;

// Packs one occurrence's triangles; the normals are computed from the corners, as the format requires.
void pack(const BodyMesh& mesh, const GkMatrix3d& placement, std::string& bytes)
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

/// What `pack` has packed, as text.
std::string words(const std::string& bytes)
{
    std::string text;
    const auto add = [&](const char* before, const float* numbers) {
        text += before;
        for (int i = 0; i < 3; ++i) {
            char digits[32];
            text += ' ';
            text.append(digits, std::to_chars(digits, digits + sizeof digits, numbers[i]).ptr);
        }
        text += '\n';
    };
    for (size_t at = 0; at + kTriangleSize <= bytes.size(); at += kTriangleSize) {
        float record[12];
        std::memcpy(record, bytes.data() + at, sizeof record);
        add("facet normal", record);
        text += "outer loop\n";
        for (int corner = 1; corner <= 3; ++corner)
            add("vertex", record + static_cast<size_t>(3 * corner));
        text += "endloop\nendfacet\n";
    }
    return text;
}

std::string binaryHeader(const MeshExport& job, uint64_t triangles)
{
    char header[kHeaderSize] = {};
    std::snprintf(header, sizeof header, "Quillet, %ls", job.unit.name);
    const auto count = static_cast<uint32_t>(triangles);
    std::memcpy(header + 80, &count, sizeof count);
    return {header, sizeof header};
}

} // namespace

bool writeStl(const MeshExport& job, Status& status)
{
    return exported(job, status, [&] {
        ExportedMeshes meshes;
        if (!meshes.make(job))
            return false;
        if (!job.asText && meshes.triangles() > UINT32_MAX)
            throw std::runtime_error("the model has more triangles than the format can count");
        ExportFile file(job.path);
        file.write(job.asText ? "solid Quillet\n" : binaryHeader(job, meshes.triangles()));
        const GkMatrix3d turn = towards(job, UpAxis::Z);
        const auto& occurrences = meshes.occurrences();
        std::string bytes;
        for (size_t i = 0; i < occurrences.size(); ++i) {
            const BodyMesh* mesh = meshes.of(occurrences[i].body);
            if (!mesh)
                continue;
            pack(*mesh, turn * occurrences[i].placement, bytes);
            file.write(job.asText ? words(bytes) : bytes);
            if (!job.goOn(ExportedMeshes::kShare +
                          (1 - ExportedMeshes::kShare) * double(i) / double(occurrences.size())))
                return false;
        }
        if (job.asText)
            file.write("endsolid Quillet\n");
        file.commit();
        return true;
    });
}

} // namespace Vs::Exchange
