#pragma once

#include "Server/Translate/Reading.h"

#include <Quantity_ColorRGBA.hxx>

#include <functional>

class XCAFDoc_VisMaterial;

namespace Vs::Translate {

using ColourOfMaterial = std::function<Quantity_ColorRGBA(const XCAFDoc_VisMaterial& material)>;

/// Completes the reading of a file whose parts consist of triangles, as in the mesh formats: their materials
/// become colours, and each body gets the mesh that is shown. Normals in the file are kept; if it has none,
/// they are smooth where triangles meet at less than 30 degrees. Throws Unreadable.
void takeMeshes(Reading& reading, Reporter& reporter, const ColourOfMaterial& colourOf);
/// Each material has its base colour.
void takeMeshes(Reading& reading, Reporter& reporter);

} // namespace Vs::Translate
