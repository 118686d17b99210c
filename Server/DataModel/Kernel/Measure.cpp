#include "Server/DataModel/Kernel/Measure.h"

#include "Server/DataModel/Kernel/Integrals.h"

#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>

#include <algorithm>
#include <array>
#include <cmath>
#include <xxhash.h>

namespace Vs::Kernel {

namespace {

// A face that was read as triangles has no surface for the kernel to integrate.
bool onlyTriangles(const TopoDS_Face& face)
{
    return BRep_Tool::Surface(face).IsNull();
}

// Adds up the places of parts, each with its own size, to the place of the whole.
void addTo(double& sum, GkPoint3d& centre, double size, const gp_Pnt& place)
{
    sum += size;
    if (sum > 0)
        centre = centre + (GkPoint3d(place.X(), place.Y(), place.Z()) - centre) * (size / sum);
}

/// The volume of a part, whose spread is about its own place.
void addVolume(BodyProperties& whole, double size, const gp_Pnt& place, const gp_Mat& spread)
{
    const double before = whole.volume;
    const gp_XYZ way = place.XYZ() - gp_XYZ(whole.volumeCentre.x, whole.volumeCentre.y, whole.volumeCentre.z);
    addTo(whole.volume, whole.volumeCentre, size, place);
    // Both move away from their own centres to the one of the whole.
    const double apart = whole.volume > 0 ? before * size / whole.volume : 0;
    const auto product = [&](int i, int k) { return spread(i, k) + apart * way.Coord(i) * way.Coord(k); };
    Spread& sum = whole.spread;
    sum.xx += product(1, 1);
    sum.yy += product(2, 2);
    sum.zz += product(3, 3);
    sum.xy += product(1, 2);
    sum.xz += product(1, 3);
    sum.yz += product(2, 3);
}

gp_Mat outerProduct(const gp_XYZ& v)
{
    return {v.X() * v, v.Y() * v, v.Z() * v};
}

void addArea(double& sum, GkPoint3d& centre, const TopoDS_Shape& shape)
{
    const GProp_GProps properties = integratedArea(shape);
    addTo(sum, centre, std::abs(properties.Mass()), properties.CentreOfMass());
}

bool isClosed(const TopoDS_Shape& solid)
{
    for (TopExp_Explorer shells(solid, TopAbs_SHELL); shells.More(); shells.Next())
        if (!BRep_Tool::IsClosed(shells.Current()))
            return false;
    return true;
}

/// Sums over triangles; right for a closed surface whose triangles all face outwards, or all inwards.
class TriangleSums
{
public:
    void add(const TopoDS_Face& face)
    {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
        if (mesh.IsNull())
            return;
        for (int i = 1; i <= mesh->NbTriangles(); ++i) {
            int a, b, c;
            mesh->Triangle(i).Get(a, b, c);
            add(mesh->Node(a).XYZ(), mesh->Node(b).XYZ(), mesh->Node(c).XYZ());
        }
    }

    void addTo(BodyProperties& result, BodyMeasure what) const
    {
        if (!(m_area > 0))
            return;
        if (what == BodyMeasure::Area) {
            Kernel::addTo(result.area, result.areaCentre, m_area, m_areaMoment / m_area);
            return;
        }
        // What the triangles of an open surface sum up to depends on where its origin lies.
        if (m_sides == 0 && m_volume != 0) {
            const gp_XYZ centre = m_volumeMoment / m_volume;
            const double sign = m_volume > 0 ? 1 : -1;
            addVolume(result, std::abs(m_volume), centre,
                      (m_spread - outerProduct(centre) * m_volume) * sign);
        } else
            result.closed = false;
    }

private:
    void add(const gp_XYZ& p, const gp_XYZ& q, const gp_XYZ& r)
    {
        const double area = ((q - p) ^ (r - p)).Modulus() / 2, volume = p * (q ^ r) / 6;
        m_area += area;
        m_areaMoment += (p + q + r) * (area / 3);
        m_volume += volume;
        m_volumeMoment += (p + q + r) * (volume / 4);
        // Of the tetrahedron whose fourth corner is the origin.
        m_spread +=
            (outerProduct(p) + outerProduct(q) + outerProduct(r) + outerProduct(p + q + r)) * (volume / 20);
        addSide(p, q);
        addSide(q, r);
        addSide(r, p);
    }

    // The two triangles of a side traverse it in opposite directions. So a sum of hashes with signs becomes
    // zero if each side has its two, and practically never else; no table of millions of sides is needed.
    void addSide(const gp_XYZ& from, const gp_XYZ& to)
    {
        const std::array<double, 3> a = {from.X(), from.Y(), from.Z()}, b = {to.X(), to.Y(), to.Z()};
        const std::array ends = {std::min(a, b), std::max(a, b)};
        const uint64_t hash = XXH3_64bits(ends.data(), sizeof ends);
        m_sides += a < b ? hash : a > b ? ~hash + 1 : 0;
    }

    double m_area = 0, m_volume = 0;
    gp_XYZ m_areaMoment{0, 0, 0}, m_volumeMoment{0, 0, 0};
    gp_Mat m_spread; ///< About the origin.
    uint64_t m_sides = 0;
};

void addVolume(const TopoDS_Shape& solid, BodyProperties& result)
{
    const GProp_GProps properties = integratedVolume(solid);
    // A solid that was written inside out has a negative volume, and still takes that room.
    const double sign = properties.Mass() < 0 ? -1 : 1;
    const gp_Mat inertia = properties.MatrixOfInertia() * sign;
    gp_Mat spread = inertia * -1;
    for (int i = 1; i <= 3; ++i)
        spread(i, i) += (inertia(1, 1) + inertia(2, 2) + inertia(3, 3)) / 2;
    addVolume(result, std::abs(properties.Mass()), properties.CentreOfMass(), spread);
    result.closed &= isClosed(solid);
}

} // namespace

BodyProperties measureShape(const TopoDS_Shape& shape, BodyMeasure what)
{
    BodyProperties result;
    TopTools_IndexedMapOfShape faces, solidFaces, solids;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    result.faces = faces.Extent();
    for (TopExp_Explorer each(shape, TopAbs_SOLID); each.More(); each.Next())
        solids.Add(each.Current());
    result.solids = solids.Extent();
    result.closed = true;

    for (int i = 1; i <= solids.Extent(); ++i) {
        if (what == BodyMeasure::Volume)
            addVolume(solids(i), result);
        else
            addArea(result.area, result.areaCentre, solids(i));
        TopExp::MapShapes(solids(i), TopAbs_FACE, solidFaces);
    }
    TriangleSums triangles;
    GkPoint3d freeCentre;
    for (int i = 1; i <= faces.Extent(); ++i) {
        const TopoDS_Face& face = TopoDS::Face(faces(i));
        if (solidFaces.Contains(face))
            continue;
        if (onlyTriangles(face))
            triangles.add(face);
        else if (what == BodyMeasure::Volume)
            continue;
        else if (result.solids > 0)
            addArea(result.freeArea, freeCentre, face);
        else
            addArea(result.area, result.areaCentre, face);
    }
    triangles.addTo(result, what);
    result.closed &= result.volume > 0;
    return result;
}

} // namespace Vs::Kernel
