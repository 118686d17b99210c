#include "Server/Scene/Rendra/MeshShape.h"

#include <bit>
#include <cstdint>

namespace Rendra {

namespace {

uint64_t mix(uint64_t value)
{
    value ^= value >> 30;
    value *= 0xBF58476D1CE4E5B9u;
    value ^= value >> 27;
    value *= 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

/// Equal for equal positions; zero has two forms.
uint64_t placeOf(const float* position)
{
    const auto bits = [](float value) {
        return uint64_t(std::bit_cast<uint32_t>(value == 0 ? 0.0f : value));
    };
    return mix(mix(bits(position[0]) << 32 | bits(position[1])) + bits(position[2]));
}

/// A number for the side between two positions that changes its sign with the direction.
uint64_t side(uint64_t from, uint64_t to)
{
    if (from == to)
        return 0;
    return from < to ? mix(mix(from) + to) : 0 - mix(mix(to) + from);
}

} // namespace

// Every side and its opposite add up to zero; it is practically impossible that sides that don't match do so
// too. That needs no table of sides, so that a large mesh takes no longer than its upload.
bool isClosedAndOutward(const Vs::BodyMesh& mesh)
{
    if (mesh.triangles.empty())
        return false;
    std::vector<uint64_t> places(mesh.positions.size() / 3);
    for (size_t i = 0; i < places.size(); ++i)
        places[i] = placeOf(&mesh.positions[3 * i]);

    uint64_t open = 0;
    double volume = 0;
    for (size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
        const uint32_t* corners = &mesh.triangles[i];
        for (int j = 0; j < 3; ++j)
            open += side(places[corners[j]], places[corners[(j + 1) % 3]]);
        const float* a = &mesh.positions[3 * size_t(corners[0])];
        const float* b = &mesh.positions[3 * size_t(corners[1])];
        const float* c = &mesh.positions[3 * size_t(corners[2])];
        volume += double(a[0]) * (double(b[1]) * c[2] - double(b[2]) * c[1]) +
                  double(a[1]) * (double(b[2]) * c[0] - double(b[0]) * c[2]) +
                  double(a[2]) * (double(b[0]) * c[1] - double(b[1]) * c[0]);
    }
    return open == 0 && volume > 0;
}

} // namespace Rendra
