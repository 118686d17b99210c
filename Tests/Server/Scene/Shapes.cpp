#include "Tests/Server/Scene/Shapes.h"

#include "Server/Geometry/GkPoint3d.h"

#include <cmath>

namespace Shapes {

namespace {

constexpr double kTurn = 6.283185307179586;

class Builder
{
public:
    uint32_t vertex(const GkPoint3d& p, const GkVector3d& n)
    {
        for (double value : {p.x, p.y, p.z})
            m_mesh->positions.push_back(float(value));
        for (double value : {n.x, n.y, n.z})
            m_mesh->normals.push_back(float(value));
        m_mesh->bounds.add(p);
        return uint32_t(m_mesh->positions.size() / 3 - 1);
    }
    void triangle(uint32_t a, uint32_t b, uint32_t c)
    {
        m_mesh->triangles.insert(m_mesh->triangles.end(), {a, b, c});
    }
    /// Four corners, counter-clockwise seen from outside.
    void quad(uint32_t a, uint32_t b, uint32_t c, uint32_t d)
    {
        triangle(a, b, c);
        triangle(a, c, d);
    }
    /// Ends the face that began where the last one ended.
    void face(int colour = -1)
    {
        const auto count = uint32_t(m_mesh->triangles.size() / 3);
        m_mesh->faces.push_back({m_faceStart, count - m_faceStart, colour});
        m_faceStart = count;
    }
    void edge(const std::vector<GkPoint3d>& points)
    {
        m_mesh->edgeStarts.push_back(uint32_t(m_mesh->edgePoints.size() / 3));
        for (const GkPoint3d& p : points)
            for (double value : {p.x, p.y, p.z})
                m_mesh->edgePoints.push_back(float(value));
    }
    void corner(const GkPoint3d& p)
    {
        for (double value : {p.x, p.y, p.z})
            m_mesh->vertexPoints.push_back(float(value));
    }
    int colour(const Vs::Colour& colour)
    {
        m_mesh->colours.push_back(colour);
        return int(m_mesh->colours.size() - 1);
    }
    MeshPtr take()
    {
        m_mesh->edgeStarts.push_back(uint32_t(m_mesh->edgePoints.size() / 3));
        return m_mesh;
    }

private:
    std::shared_ptr<Vs::BodyMesh> m_mesh = std::make_shared<Vs::BodyMesh>();
    uint32_t m_faceStart = 0;
};

} // namespace

MeshPtr box(double x, double y, double z, const Vs::Colour* topColour)
{
    Builder builder;
    const auto side = [&](const GkPoint3d& at, const GkVector3d& u, const GkVector3d& v, int colour) {
        const GkVector3d normal = u.crossProduct(v).normal();
        builder.quad(builder.vertex(at, normal), builder.vertex(at + u, normal),
                     builder.vertex(at + u + v, normal), builder.vertex(at + v, normal));
        builder.face(colour);
    };
    const GkVector3d ex(x, 0, 0), ey(0, y, 0), ez(0, 0, z);
    const GkPoint3d origin;
    side(origin, ez, ey, -1);
    side(origin + ex, ey, ez, -1);
    side(origin, ex, ez, -1);
    side(origin + ey, ez, ex, -1);
    side(origin, ey, ex, -1);
    side(origin + ez, ex, ey, topColour ? builder.colour(*topColour) : -1);
    for (const GkVector3d& shift : {GkVector3d(), ez})
        builder.edge({origin + shift, origin + ex + shift, origin + ex + ey + shift, origin + ey + shift,
                      origin + shift});
    for (const GkVector3d& shift : {GkVector3d(), ex, ex + ey, ey})
        builder.edge({origin + shift, origin + shift + ez});
    for (const GkVector3d& up : {GkVector3d(), ez})
        for (const GkVector3d& shift : {GkVector3d(), ex, ex + ey, ey})
            builder.corner(origin + shift + up);
    return builder.take();
}

MeshPtr ball(double radius, int rings)
{
    Builder builder;
    for (int i = 0; i <= rings; ++i)
        for (int j = 0; j <= 2 * rings; ++j) {
            const double polar = kTurn / 2 * i / rings, around = kTurn * j / (2 * rings);
            const GkVector3d n(std::sin(polar) * std::cos(around), std::sin(polar) * std::sin(around),
                               std::cos(polar));
            builder.vertex(GkPoint3d() + n * radius, n);
        }
    const uint32_t row = uint32_t(2 * rings + 1);
    for (uint32_t i = 0; i < uint32_t(rings); ++i)
        for (uint32_t j = 0; j + 1 < row; ++j)
            builder.quad(i * row + j, (i + 1) * row + j, (i + 1) * row + j + 1, i * row + j + 1);
    builder.face();
    return builder.take();
}

MeshPtr cylinder(double radius, double height, int sides)
{
    Builder builder;
    const auto around = [&](int i) {
        return GkVector3d(std::cos(kTurn * i / sides), std::sin(kTurn * i / sides), 0);
    };
    const GkVector3d up(0, 0, height);
    const uint32_t first = builder.vertex(GkPoint3d() + around(0) * radius, around(0));
    builder.vertex(GkPoint3d() + around(0) * radius + up, around(0));
    for (int i = 1; i <= sides; ++i) {
        builder.vertex(GkPoint3d() + around(i) * radius, around(i));
        builder.vertex(GkPoint3d() + around(i) * radius + up, around(i));
        const uint32_t at = first + uint32_t(i) * 2;
        builder.quad(at - 2, at, at + 1, at - 1);
    }
    builder.face();
    for (int end = 0; end < 2; ++end) {
        const GkVector3d normal(0, 0, end ? 1 : -1);
        const GkPoint3d centre = GkPoint3d() + up * end;
        const uint32_t middle = builder.vertex(centre, normal);
        std::vector<GkPoint3d> rim;
        for (int i = 0; i <= sides; ++i) {
            rim.push_back(centre + around(i) * radius);
            const uint32_t at = builder.vertex(rim.back(), normal);
            if (i > 0)
                end ? builder.triangle(middle, at - 1, at) : builder.triangle(middle, at, at - 1);
        }
        builder.face();
        builder.edge(rim);
    }
    return builder.take();
}

MeshPtr torus(double radius, double thickness, int sides)
{
    Builder builder;
    const int around = sides / 2;
    for (int i = 0; i <= sides; ++i)
        for (int j = 0; j <= around; ++j) {
            const double a = kTurn * i / sides, b = kTurn * j / around;
            const GkVector3d out(std::cos(a), std::sin(a), 0);
            const GkVector3d n = out * std::cos(b) + GkVector3d(0, 0, std::sin(b));
            builder.vertex(GkPoint3d() + out * radius + n * thickness, n);
        }
    const uint32_t row = uint32_t(around + 1);
    for (uint32_t i = 0; i < uint32_t(sides); ++i)
        for (uint32_t j = 0; j + 1 < row; ++j)
            builder.quad(i * row + j, (i + 1) * row + j, (i + 1) * row + j + 1, i * row + j + 1);
    builder.face();
    return builder.take();
}

} // namespace Shapes
