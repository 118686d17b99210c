#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Body/Private/MeshSides.h"
#include "Server/Geometry/GkPoint3d.h"
#include "Server/Geometry/GkVector3d.h"

#include <memory>
#include <vector>

namespace Vs {

/// What of a body's mesh may become lines of a drawing, in the body's own coordinates.
class DrawnMesh
{
public:
    struct Polyline
    {
        bool smooth = false; ///< The faces on both sides continue tangentially.
        std::vector<GkPoint3d> points;
    };

    /// Takes about two seconds for a million triangles. If the person cancels meanwhile (Progress), it is
    /// incomplete. Any thread.
    explicit DrawnMesh(std::shared_ptr<const BodyMesh> mesh);

    const BodyMesh& mesh() const { return *m_mesh; }
    /// The edges: those of the exact shape, or of a body of triangles alone those that a person takes for
    /// edges, and its borders.
    const std::vector<Polyline>& edges() const { return m_edges; }
    /// Where the surface turns away from a viewer in that direction, except along sharp edges.
    std::vector<Polyline> outlines(const GkVector3d& towardsViewer) const;
    /// Whether the triangles enclose a volume and face outwards, so that those that face away hide nothing
    /// that others don't hide as well.
    bool isClosed() const { return m_isClosed; }
    /// How far the triangles run below the surfaces that they stand for.
    double deviation() const { return m_deviation; }

private:
    void takeEdges(const BodyMesh& parts);
    void dropSeams();
    double curvature(size_t triangle, uint32_t a, uint32_t b) const;
    bool bendsAlike(double one, double other) const;
    void takeBorders();
    void findSharp();
    bool encloses() const;
    GkVector3d normalOf(size_t triangle) const;

    std::shared_ptr<const BodyMesh> m_mesh;
    MeshSides m_sides;
    std::vector<Polyline> m_edges;
    std::vector<bool> m_sharp; ///< By sides: a drawn edge that isn't smooth.
    bool m_isClosed = false;
    double m_deviation = 0;
};

} // namespace Vs
