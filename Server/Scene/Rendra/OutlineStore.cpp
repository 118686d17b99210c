#include "Server/Scene/Rendra/OutlineStore.h"

#include "Server/Scene/Projection.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

namespace {

constexpr size_t kGroupCorners = 3 * 64;

GkVector3d vectorAt(const std::vector<float>& values, uint32_t index)
{
    const float* v = &values[3 * size_t(index)];
    return {v[0], v[1], v[2]};
}

GkMatrix3d placeOf(const Instance& instance)
{
    GkMatrix3d matrix;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            matrix.entry[row][column] = double(instance.rows[row][column]);
    return matrix;
}

float step(float from, float to, float value)
{
    const float t = std::clamp((value - from) / (to - from), 0.0f, 1.0f);
    return t * t * (3 - 2 * t);
}

} // namespace

OutlineStore::Group OutlineStore::groupOf(const Vs::BodyMesh& mesh, const std::vector<uint32_t>& corners,
                                          size_t first, size_t end)
{
    BBox box;
    GkVector3d sum;
    for (size_t i = first; i < end; ++i) {
        box.add(GkPoint3d() + vectorAt(mesh.positions, corners[i]));
        sum = sum + vectorAt(mesh.normals, corners[i]);
    }
    double sine = 1;
    if (sum.length() > 1e-6) {
        sum = sum * (1 / sum.length());
        double least = 1;
        for (size_t i = first; i < end; ++i)
            least = std::min(least, sum.dotProduct(vectorAt(mesh.normals, corners[i])));
        if (least > 0)
            sine = std::sqrt(std::max(0.0, 1 - least * least)) + 1e-3;
    }
    const GkPoint3d centre = box.centre();
    return {{float(centre.x), float(centre.y), float(centre.z)},
            float(box.diagonal() / 2),
            {float(sum.x), float(sum.y), float(sum.z)},
            float(sine),
            uint32_t(first),
            uint32_t(end)};
}

OutlineStore::Round OutlineStore::make(const Vs::BodyMesh& mesh)
{
    Round round;
    if (mesh.normals.size() != mesh.positions.size())
        return round;
    const auto differ = [&](uint32_t a, uint32_t b) {
        for (size_t i = 0; i < 3; ++i)
            if (std::abs(mesh.normals[3 * size_t(a) + i] - mesh.normals[3 * size_t(b) + i]) > 1e-4f)
                return true;
        return false;
    };
    for (size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
        const uint32_t* t = &mesh.triangles[i];
        if (differ(t[0], t[1]) || differ(t[0], t[2]))
            round.corners.insert(round.corners.end(), t, t + 3);
    }
    for (size_t first = 0; first < round.corners.size(); first += kGroupCorners)
        round.groups.push_back(
            groupOf(mesh, round.corners, first, std::min(first + kGroupCorners, round.corners.size())));
    return round;
}

const OutlineStore::Round& OutlineStore::roundOf(const std::shared_ptr<const Vs::BodyMesh>& mesh)
{
    Round& round = m_meshes[mesh.get()];
    if (round.source.expired()) { // new, or at the address of a freed one
        round = make(*mesh);
        round.source = mesh;
    }
    return round;
}

void OutlineStore::gather(const Batch& batch, const std::shared_ptr<const Vs::BodyMesh>& shown,
                          const Vs::Scene::Projection& projection, const GkVector3d& origin,
                          const Limits& limits, std::vector<Vertex>& vertices)
{
    const Round& round = roundOf(shown);
    if (round.groups.empty())
        return;
    const Vs::BodyMesh& mesh = *shown;
    const GkMatrix3d view = projection.view() * GkMatrix3d::translation(origin);
    const bool perspective = projection.perspective();
    const double size = mesh.bounds.diagonal();
    for (size_t i = 0; i < batch.instances.size(); ++i) {
        const Instance& instance = batch.instances[i];
        const Batch::Box& box = batch.boxes[i];
        const GkPoint3d centre = view * GkPoint3d(box.centre[0], box.centre[1], box.centre[2]);
        const double radius = std::hypot(box.half[0], box.half[1], box.half[2]), ahead = -centre.z;
        const double scale = perspective ? std::max(ahead, 1e-9) : 1.0;
        const auto pixels = float(2 * radius / (projection.pixelSize(1) * scale));
        const auto isBeside = [&](double off, double half) {
            return std::abs(off) - radius * std::hypot(1.0, perspective ? half : 0) > half * scale;
        };
        if (pixels < limits.leastPixels || (perspective && ahead + radius < 0) ||
            isBeside(centre.x, projection.halfWidth()) || isBeside(centre.y, projection.halfHeight()))
            continue;

        // In the body's own coordinates, in which normals are stored.
        const GkMatrix3d place = placeOf(instance), back = (view * place).inverse();
        const GkPoint3d eye = back * GkPoint3d(0, 0, 0);
        const GkVector3d towards = back * GkVector3d(0, 0, 1);
        const GkVector3d middle = mesh.bounds.centre().asVector();
        const double tolerance = 1e-6 * (perspective ? (eye.asVector() - middle).length() : towards.length());
        const auto toViewer = [&](const GkVector3d& at) {
            return perspective ? eye.asVector() - at : towards;
        };
        const auto facing = [&](uint32_t corner) {
            // Planes seen edge-on have no line.
            return vectorAt(mesh.normals, corner).dotProduct(toViewer(vectorAt(mesh.positions, corner))) -
                   tolerance;
        };
        const float fade = step(limits.leastPixels, limits.leastPixels + 50 * limits.pixel, pixels);
        const bool isGhost = instance.flags & Instance::kGhost;
        const float lit = instance.flags & Instance::kSelected  ? 2.0f
                          : instance.flags & Instance::kPointed ? 1.0f
                                                                : 0.0f;
        const float opacity = isGhost ? 0.16f : 0.5f + 0.5f * float(instance.colour[3]) / 255;
        const auto put = [&](const GkVector3d& at) {
            const GkPoint3d p = place * (GkPoint3d() + at);
            vertices.push_back({{float(p.x), float(p.y), float(p.z), fade}, {float(size), lit, opacity, 0}});
        };
        for (const Group& group : round.groups) {
            const GkVector3d axis(group.axis[0], group.axis[1], group.axis[2]);
            const GkVector3d to = toViewer({group.centre[0], group.centre[1], group.centre[2]});
            const double squared = to.dotProduct(to), rise = axis.dotProduct(to);
            // Sines add up to more than the sine of the sum does.
            const double reach = perspective ? double(group.radius) : 0, sine = double(group.sine);
            if (rise * rise > sine * sine * squared && std::abs(rise) > sine * std::sqrt(squared) + reach)
                continue;
            for (uint32_t corner = group.first; corner < group.end; corner += 3) {
                const uint32_t* t = &round.corners[corner];
                const double f[3] = {facing(t[0]), facing(t[1]), facing(t[2])};
                const bool s[3] = {f[0] > 0, f[1] > 0, f[2] > 0};
                if (s[0] == s[1] && s[1] == s[2])
                    continue;
                // The line runs between the two sides that meet in the corner that differs from the others.
                const int tip = s[1] == s[2] ? 0 : s[0] == s[2] ? 1 : 2;
                const GkVector3d from = vectorAt(mesh.positions, t[tip]);
                for (const int other : {(tip + 1) % 3, (tip + 2) % 3})
                    put(from + (vectorAt(mesh.positions, t[other]) - from) * (f[tip] / (f[tip] - f[other])));
            }
        }
    }
}

void OutlineStore::collect()
{
    std::erase_if(m_meshes, [](const auto& each) { return each.second.source.expired(); });
}

} // namespace Rendra
