#pragma once

#include "Server/Scene/Environment.h"
#include "Server/Scene/Rendra/Program.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Rendra {

/// What polished and satin faces mirror: an environment with its lamps as soft boxes, in a cube of pictures
/// that are blurred the more the rougher a face is (Karis, 2013). Computed when a style first needs it, in a
/// fiftieth of a second, and kept as long as the environment stays the same.
class EnvironmentMirror
{
public:
    /// Sets the uniforms `mirrored` and `mirrorLevels` for the program, which must be current.
    void set(const Program& program, const Vs::Scene::Environment& environment);
    void release();

private:
    GLuint m_texture = 0;
    const Vs::Scene::Environment* m_environment = nullptr;
};

/// A cube of six square pictures, of linear colours, in the order and orientation of OpenGL.
class LightCube
{
public:
    using Colour = std::array<float, 3>;
    explicit LightCube(int side) : m_side(side), m_texels(size_t(6 * side * side)) {}

    int side() const { return m_side; }
    /// Row by row, from the first face on.
    const Colour* face(int face) const { return &m_texels[size_t(face * m_side * m_side)]; }
    Colour& at(int face, int x, int y) { return m_texels[size_t((face * m_side + y) * m_side + x)]; }
    const Colour& at(int face, int x, int y) const
    {
        return m_texels[size_t((face * m_side + y) * m_side + x)];
    }
    /// The direction, of unit length, in which a place of a face lies, each coordinate from 0 to 1.
    [[nodiscard]] static GkVector3d direction(int face, double x, double y);
    /// The texel in a direction.
    [[nodiscard]] const Colour& seen(const GkVector3d& direction) const;
    /// The same in half the size.
    [[nodiscard]] LightCube halved() const;

private:
    int m_side;
    std::vector<Colour> m_texels;
};

} // namespace Rendra
