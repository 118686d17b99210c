#pragma once

#include "Server/Geometry/GkMatrix3d.h"

#include <string>
#include <vector>

/// Shapes that the program itself can't make, written as BREP files by the kernel.
namespace KernelShapes {

/// A cone of radius 6 at its base and 2 at its top, 10 high, about an axis through (1, 2, 3) along (0, 3, 4).
void writeCone(const std::string& path);
/// An upright prism of 5 mm over a hexagon with sides of 10 mm.
void writeHexagon(const std::string& path);
/// A torus of radius 10 and tube 4, hollowed by one of tube 3.
void writeHollowTorus(const std::string& path);
/// Splines that represent round surfaces: a sphere of radius 5, a torus of radius 30 and tube 3 about it, a
/// cylinder of radius 4 and height 10 at (50, 0, 0) and a cone like that of writeCone at (100, 0, 0).
void writeRoundSplines(const std::string& path);
/// An ellipse with half axes of 5 and 2, extruded by 20, and beside it the same as splines.
void writeExtrudedEllipses(const std::string& path);
/// Two flat faces of 20 by 20 mm, at z = 0 and z = 10.
void writePlanes(const std::string& path);
/// A tilted flat face of 40 by 20 mm with a square hole in each square millimetre, whose sides are 0.1 mm at
/// one corner of the face and 0.9 mm at the other.
void writePerforatedPlane(const std::string& path);
/// Edges from the origin: lines along X and Y, then straight splines along X and (1, 1, 0); and a face beside
/// them, since edges alone aren't a model.
void writeEdges(const std::string& path);
/// A box of 10 mm without its top: an open solid.
void writeOpenSolid(const std::string& path);
/// A box of 10 mm and a cone beside it, as one part.
void writeSeveralSolids(const std::string& path);
/// A box of 10 mm and, beside it, a face made only of two triangles.
void writeMixed(const std::string& path);
/// A square of 10 mm beside an edge of 1e-8 mm.
void writeDegenerate(const std::string& path);

/// Two plates of 20 by 12 by 4 mm with rounded edges and two round holes, as one part of two solids: one at
/// the origin, the other at `place`, optionally as splines. Their shortest distance, by the kernel's search
/// over all of both.
double writeRoundedPair(const std::string& path, const GkMatrix3d& place, bool asSplines);

/// A round hole through a plate of 100 by 100 by 4 mm that has a corner at the origin.
struct Hole
{
    double x, y, radius;
};
/// A box of these sizes, or a cylinder or a sphere of these radius and height, at a place.
struct Placed
{
    enum class Kind { Box, Cylinder, Sphere };
    Kind kind;
    double sizes[3];
    GkMatrix3d place;
};
/// The shortest distance between a plate with holes and other things, by the kernel's search over all of
/// both.
std::vector<double> distancesFromPlate(const std::vector<Hole>& holes, const std::vector<Placed>& others);

} // namespace KernelShapes
