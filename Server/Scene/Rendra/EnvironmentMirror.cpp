#include "Server/Scene/Rendra/EnvironmentMirror.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

using Vs::Scene::Environment;

namespace {

constexpr double kPi = 3.14159265358979323846;
/// The side of the sharpest pictures, and how many there are for rougher faces: the last for a roughness
/// of 1.
constexpr int kSide = 64, kLevels = 4;
/// For each texel of the first of the rougher pictures. The others, with fewer texels, have more.
constexpr uint32_t kSamples = 64;
/// ObjectShadow and the ground use those below.
constexpr GLuint kUnit = 7;
/// The form of a soft box, in multiples of a lamp's size, and the part of it over which its edges fade.
constexpr double kBoxWidth = 1.15, kBoxHeight = 0.78, kBoxEdge = 0.25;
constexpr double kSmallestLamp = 0.05;
/// More than the largest number of the texture's format would become infinite.
constexpr float kBrightest = 60000;

double rise(double from, double to, double value)
{
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// A lamp as a rectangle of light, standing upright across its direction, which lights as much as the lamp.
struct SoftBox
{
    explicit SoftBox(const Environment::Lamp& lamp) : to(lamp.direction)
    {
        const GkVector3d up = std::abs(to.z) < 0.99 ? GkVector3d::kZAxis : GkVector3d::kXAxis;
        right = up.crossProduct(to).normal();
        above = to.crossProduct(right);
        const double size = std::max(kSmallestLamp, double(lamp.size));
        halfWidth = kBoxWidth * size;
        halfHeight = kBoxHeight * size;
        // Edges that fade take light away, about half of their width.
        const double area = 4 * halfWidth * halfHeight * (1 - kBoxEdge / 2) * (1 - kBoxEdge / 2);
        const double strength = kPi / area;
        light = {float(lamp.colour.r * strength), float(lamp.colour.g * strength),
                 float(lamp.colour.b * strength)};
    }

    double cover(const GkVector3d& direction) const
    {
        const double ahead = direction.dotProduct(to);
        if (ahead <= 0.1)
            return 0;
        const double x = std::abs(direction.dotProduct(right)) / ahead / halfWidth;
        const double y = std::abs(direction.dotProduct(above)) / ahead / halfHeight;
        return (1 - rise(1 - kBoxEdge, 1, x)) * (1 - rise(1 - kBoxEdge, 1, y));
    }

    GkVector3d to, right, above;
    double halfWidth, halfHeight;
    LightCube::Colour light;
};

LightCube sharp(const Environment& environment)
{
    const std::array<SoftBox, 3> boxes = {SoftBox(environment.lamps[0]), SoftBox(environment.lamps[1]),
                                          SoftBox(environment.lamps[2])};
    LightCube cube(kSide);
    for (int face = 0; face < 6; ++face)
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x) {
                const auto at = [&](double across, double down) {
                    return LightCube::direction(face, (x + across) / kSide, (y + down) / kSide);
                };
                const Vs::Colour around = environment.seen(at(0.5, 0.5));
                LightCube::Colour& texel = cube.at(face, x, y);
                texel = {around.r, around.g, around.b};
                if (environment.panorama)
                    continue;
                for (const SoftBox& box : boxes) {
                    // Small boxes have few texels, whose parts count.
                    double cover = 0;
                    for (const double across : {0.25, 0.75})
                        for (const double down : {0.25, 0.75})
                            cover += box.cover(at(across, down)) / 4;
                    for (size_t i = 0; i < 3; ++i)
                        texel[i] += box.light[i] * float(cover);
                }
            }
    return cube;
}

/// Bits in reverse: a sequence that fills the unit interval evenly.
double reversed(uint32_t bits)
{
    bits = (bits << 16) | (bits >> 16);
    bits = ((bits & 0x55555555u) << 1) | ((bits & 0xAAAAAAAAu) >> 1);
    bits = ((bits & 0x33333333u) << 2) | ((bits & 0xCCCCCCCCu) >> 2);
    bits = ((bits & 0x0F0F0F0Fu) << 4) | ((bits & 0xF0F0F0F0u) >> 4);
    bits = ((bits & 0x00FF00FFu) << 8) | ((bits & 0xFF00FF00u) >> 8);
    return bits * 2.3283064365386963e-10;
}

/// Directions about z in which a rough face mirrors what is along z, with their weights, and the level of
/// `halved` whose texels are about as large as what each stands for.
struct Ray
{
    GkVector3d direction;
    double weight;
    size_t level;
};

std::vector<Ray> raysOf(double roughness, uint32_t samples, size_t levels)
{
    const double a2 = std::pow(roughness, 4);
    const double texel = 4 * kPi / (6.0 * kSide * kSide);
    std::vector<Ray> rays;
    for (uint32_t i = 0; i < samples; ++i) {
        const double turn = 2 * kPi * (i + 0.5) / samples, part = reversed(i) + 0.5 / samples;
        const double height2 = (1 - part) / (1 + (a2 - 1) * part), height = std::sqrt(height2);
        const double width = std::sqrt(std::max(0.0, 1 - height2));
        // Halfway between the viewer, who is along z, and where the light comes from.
        const GkVector3d half(width * std::cos(turn), width * std::sin(turn), height);
        const GkVector3d to = half * (2 * height) - GkVector3d::kZAxis;
        if (to.z <= 0)
            continue;
        const double spread = height2 * (a2 - 1) + 1;
        const double density = a2 / (kPi * spread * spread) / 4;
        const double stands = 1 / (samples * density);
        const double level = std::max(0.0, 0.5 * std::log2(stands / texel) + 0.5);
        rays.push_back({to, to.z, std::min(levels - 1, size_t(std::lround(level)))});
    }
    return rays;
}

LightCube blurred(const std::vector<LightCube>& halved, int level)
{
    const std::vector<Ray> rays = raysOf(double(level) / kLevels, kSamples << (level - 1), halved.size());
    const int side = kSide >> level;
    LightCube cube(side);
    for (int face = 0; face < 6; ++face)
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                const GkVector3d n = LightCube::direction(face, (x + 0.5) / side, (y + 0.5) / side);
                const GkVector3d right = n.perpVector().normal(), above = n.crossProduct(right);
                double sum[3] = {}, weight = 0;
                for (const Ray& ray : rays) {
                    const GkVector3d to =
                        right * ray.direction.x + above * ray.direction.y + n * ray.direction.z;
                    const LightCube::Colour& seen = halved[ray.level].seen(to);
                    for (size_t i = 0; i < 3; ++i)
                        sum[i] += ray.weight * double(seen[i]);
                    weight += ray.weight;
                }
                cube.at(face, x, y) = {float(sum[0] / weight), float(sum[1] / weight),
                                       float(sum[2] / weight)};
            }
    return cube;
}

void send(const LightCube& cube, int level)
{
    std::vector<LightCube::Colour> texels(size_t(cube.side() * cube.side()));
    for (int face = 0; face < 6; ++face) {
        std::copy_n(cube.face(face), texels.size(), texels.begin());
        for (LightCube::Colour& texel : texels)
            for (float& channel : texel)
                channel = std::min(channel, kBrightest);
        glTexImage2D(GLenum(GL_TEXTURE_CUBE_MAP_POSITIVE_X + face), level, GL_RGB16F, cube.side(),
                     cube.side(), 0, GL_RGB, GL_FLOAT, texels.data());
    }
}

} // namespace

GkVector3d LightCube::direction(int face, double x, double y)
{
    const double s = 2 * x - 1, t = 2 * y - 1;
    const GkVector3d along[6] = {{1, -t, -s}, {-1, -t, s}, {s, 1, t}, {s, -1, -t}, {s, -t, 1}, {-s, -t, -1}};
    return along[face].normal();
}

const LightCube::Colour& LightCube::seen(const GkVector3d& d) const
{
    const double x = std::abs(d.x), y = std::abs(d.y), z = std::abs(d.z);
    int face = 0;
    double most = x, s = 0, t = 0;
    if (x >= y && x >= z) {
        face = d.x > 0 ? 0 : 1;
        s = d.x > 0 ? -d.z : d.z;
        t = -d.y;
    } else if (y >= z) {
        most = y;
        face = d.y > 0 ? 2 : 3;
        s = d.x;
        t = d.y > 0 ? d.z : -d.z;
    } else {
        most = z;
        face = d.z > 0 ? 4 : 5;
        s = d.z > 0 ? d.x : -d.x;
        t = -d.y;
    }
    const auto texel = [&](double place) {
        return std::clamp(int((place / most + 1) / 2 * m_side), 0, m_side - 1);
    };
    return at(face, texel(s), texel(t));
}

LightCube LightCube::halved() const
{
    LightCube half(m_side / 2);
    for (int face = 0; face < 6; ++face)
        for (int y = 0; y < half.side(); ++y)
            for (int x = 0; x < half.side(); ++x)
                for (size_t i = 0; i < 3; ++i)
                    half.at(face, x, y)[i] =
                        (at(face, 2 * x, 2 * y)[i] + at(face, 2 * x + 1, 2 * y)[i] +
                         at(face, 2 * x, 2 * y + 1)[i] + at(face, 2 * x + 1, 2 * y + 1)[i]) /
                        4;
    return half;
}

void EnvironmentMirror::set(const Program& program, const Environment& environment)
{
    glActiveTexture(GL_TEXTURE0 + kUnit);
    if (!m_texture)
        glGenTextures(1, &m_texture);
    glBindTexture(GL_TEXTURE_CUBE_MAP, m_texture);
    if (m_environment != &environment) {
        m_environment = &environment;
        std::vector<LightCube> halved{sharp(environment)};
        while (halved.back().side() > 4)
            halved.push_back(halved.back().halved());
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        send(halved.front(), 0);
        for (int level = 1; level <= kLevels; ++level)
            send(blurred(halved, level), level);
        glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAX_LEVEL, kLevels);
        glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
        glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glEnable(GL_TEXTURE_CUBE_MAP_SEAMLESS);
    }
    glActiveTexture(GL_TEXTURE0);
    glUniform1i(program.uniform("mirrored"), GLint(kUnit));
    glUniform1f(program.uniform("mirrorLevels"), kLevels);
}

void EnvironmentMirror::release()
{
    glDeleteTextures(1, &m_texture);
    *this = EnvironmentMirror();
}

} // namespace Rendra
