#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Translate/Reporter.h"

#include <Poly_Triangulation.hxx>

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// The triangles of one solid of an STL file: three corners of three coordinates each.
struct StlSolid
{
    std::string name;
    std::vector<float> corners;
};

/// Reads both forms, with keywords in any case and any number of solids. Triangles with coordinates that
/// aren't numbers are omitted with a warning. Throws Unreadable if the text makes no sense.
std::vector<StlSolid> parseStl(std::string_view bytes, Reporter& reporter,
                               std::vector<std::string>& warnings);

/// Merges corners of equal coordinates into one node for the kernel, and makes the mesh that is shown: smooth
/// where triangles meet at less than 30 degrees, with an edge line where they meet at more.
Handle(Poly_Triangulation) triangulate(const StlSolid& solid, BodyMesh& mesh);

} // namespace Vs::Translate
