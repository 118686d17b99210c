#include "Server/DataModel/Measure/ModelLines.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/FinerMesh.h"
#include "Server/Body/MeshPoints.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/Private/DrawnMesh.h"
#include "Server/DataModel/Measure/Private/LinePieces.h"
#include "Server/DataModel/Measure/Private/ParallelWork.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/ProgressText.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <new>
#include <stdexcept>
#include <unordered_map>

namespace Vs {

namespace {

/// How far lines may be from those of the exact shapes, as a part of the whole drawing: a tenth of a line's
/// width on a small sheet.
constexpr double kDeviation = 1.0 / 8000;

class Drawer
{
public:
    Drawer(const GkVector3d& direction, const GkVector3d& up)
    {
        const GkVector3d towards = direction.normal() * -1.0;
        const GkVector3d right = direction.crossProduct(up).normal();
        const GkVector3d upwards = towards.crossProduct(right);
        const GkVector3d rows[3] = {right, upwards, towards};
        for (size_t i = 0; i < 3; ++i) {
            m_view.entry[i][0] = rows[i].x;
            m_view.entry[i][1] = rows[i].y;
            m_view.entry[i][2] = rows[i].z;
        }
    }

    void collect(const Component& component, const GkMatrix3d& placement)
    {
        if (!component.visible)
            return;
        if (component.body)
            addBody(component.body->mesh(), placement);
        for (const auto& child : component.children)
            collect(*child, placement * child->placement);
    }

    bool isEmpty() const { return m_bodies.empty() && m_leftOut == 0; }
    LineDrawing draw(bool hidden);

private:
    struct Placed
    {
        size_t mesh; ///< Of `m_meshes`.
        GkMatrix3d place;
    };

    void addBody(std::shared_ptr<const BodyMesh> mesh, const GkMatrix3d& placement);
    std::shared_ptr<const BodyMesh> fineEnough(const std::shared_ptr<const BodyMesh>& mesh) const;
    void addTriangles(LineVisibility& visibility) const;
    std::vector<SeenLine> seenLines(size_t body) const;

    GkMatrix3d m_view;
    std::vector<Placed> m_bodies;
    std::vector<std::shared_ptr<const BodyMesh>> m_meshes;
    std::unordered_map<const BodyMesh*, size_t> m_known;
    std::vector<std::unique_ptr<DrawnMesh>> m_drawn; ///< By meshes.
    BBox m_box;
    double m_size = 0;
    size_t m_leftOut = 0;
};

void Drawer::addBody(std::shared_ptr<const BodyMesh> mesh, const GkMatrix3d& placement)
{
    if (!mesh || (mesh->triangles.empty() && mesh->edgePoints.empty())) {
        // Points alone are nothing to draw.
        if (!mesh || !mesh->faces.empty() || mesh->vertexPoints.empty())
            ++m_leftOut;
        return;
    }
    const GkMatrix3d place = m_view * placement;
    m_box.add(mesh->bounds.transformed(place));
    const auto [known, isNew] = m_known.emplace(mesh.get(), m_meshes.size());
    if (isNew)
        m_meshes.push_back(std::move(mesh));
    m_bodies.push_back({known->second, place});
}

std::shared_ptr<const BodyMesh> Drawer::fineEnough(const std::shared_ptr<const BodyMesh>& mesh) const
{
    const std::shared_ptr<FinerMesh> finer = finerMeshOf(mesh);
    const double deviation = finer ? finer->deviation(*mesh) : 0;
    if (deviation <= kDeviation * m_size)
        return mesh;
    const double levels = std::ceil(std::log(deviation / (kDeviation * m_size)) / std::log(4.0));
    const auto goOn = [] { return !Progress::cancelled(); };
    const auto made = finer->make(mesh, int(std::clamp(levels, 1.0, double(FinerMesh::kLevels))), goOn);
    return made ? made : mesh;
}

void Drawer::addTriangles(LineVisibility& visibility) const
{
    for (const Placed& body : m_bodies) {
        const DrawnMesh& drawn = *m_drawn[body.mesh];
        const BodyMesh& mesh = drawn.mesh();
        visibility.beginBody(drawn.deviation() * std::cbrt(std::abs(body.place.det())));
        const bool isMirrored = body.place.det() < 0;
        std::vector<GkPoint3d> points;
        points.reserve(mesh.positions.size() / 3);
        for (size_t i = 0; i < mesh.positions.size() / 3; ++i)
            points.push_back(body.place * pointAt(mesh.positions, i));
        for (size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
            const GkPoint3d &a = points[mesh.triangles[i]], &b = points[mesh.triangles[i + 1]],
                            &c = points[mesh.triangles[i + 2]];
            const double turn = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
            if (!drawn.isClosed() || (turn > 0) != isMirrored)
                visibility.add(a, b, c);
        }
    }
    visibility.build();
}

std::vector<SeenLine> Drawer::seenLines(size_t body) const
{
    const GkMatrix3d& place = m_bodies[body].place;
    const DrawnMesh& drawn = *m_drawn[m_bodies[body].mesh];
    std::vector<SeenLine> lines;
    const auto take = [&](const std::vector<DrawnMesh::Polyline>& all, bool areOutlines) {
        for (const DrawnMesh::Polyline& each : all) {
            SeenLine& line = lines.emplace_back(SeenLine{{uint32_t(body), areOutlines}, each.smooth, {}});
            line.points.reserve(each.points.size());
            for (const GkPoint3d& point : each.points)
                line.points.push_back(place * point);
        }
    };
    take(drawn.edges(), false);
    take(drawn.outlines(place.inverse() * GkVector3d(0, 0, 1)), true);
    return lines;
}

LineDrawing Drawer::draw(bool hidden)
{
    LineDrawing drawing;
    drawing.leftOut = m_leftOut;
    m_size = std::max(1e-6, m_box.diagonal());
    // Around the middle, single precision is best.
    const GkVector3d middle = m_box.centre().asVector();
    for (Placed& body : m_bodies)
        body.place = GkMatrix3d::translation(middle * -1.0) * body.place;

    ProgressScope progress(ProgressText::drawing());
    const auto run = [&](double from, double to, size_t count, const std::function<void(size_t)>& job) {
        if (!runInParallel(progress, from, to, count, job))
            throw std::runtime_error(Strings::narrow(ProgressText::stoppedDrawing(true)));
    };
    std::mutex making;
    m_drawn.resize(m_meshes.size());
    run(0, 0.5, m_meshes.size(), [&](size_t i) {
        std::unique_lock lock(making);
        auto mesh = fineEnough(m_meshes[i]);
        lock.unlock();
        m_drawn[i] = std::make_unique<DrawnMesh>(std::move(mesh));
    });
    LineVisibility visibility(m_size);
    run(0.5, 0.6, 1, [&](size_t) { addTriangles(visibility); });
    std::vector<std::vector<SeenLine>> ofBodies(m_bodies.size());
    run(0.6, 0.7, m_bodies.size(), [&](size_t i) { ofBodies[i] = seenLines(i); });
    std::vector<SeenLine> lines;
    for (std::vector<SeenLine>& some : ofBodies)
        std::ranges::move(some, std::back_inserter(lines));
    std::vector<std::vector<LineDrawing::Line>> pieces(lines.size());
    run(0.7, 1, lines.size(), [&](size_t i) { pieces[i] = piecesOf(lines[i], visibility, m_size, hidden); });
    for (std::vector<LineDrawing::Line>& some : pieces)
        for (LineDrawing::Line& line : some) {
            for (GkPoint2d& point : line.points)
                point = {point.x + middle.x, point.y + middle.y};
            drawing.lines.push_back(std::move(line));
        }
    return drawing;
}

} // namespace

LineDrawing modelLines(const Asset& asset, const GkVector3d& direction, const GkVector3d& up, bool hidden)
{
    assertMainThread();
    Drawer drawer(direction, up);
    const Component& root = asset.data().root();
    drawer.collect(root, root.placement);
    if (drawer.isEmpty())
        throw std::runtime_error(Strings::narrow(ProgressText::nothingToDraw()));
    try {
        return drawer.draw(hidden);
    } catch (const std::bad_alloc&) {
        throw std::runtime_error(Strings::narrow(ProgressText::stoppedDrawing(false)));
    }
}

} // namespace Vs
