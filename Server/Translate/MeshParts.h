#pragma once

#include "Server/Translate/Reading.h"

#include <functional>

class XCAFDoc_VisMaterial;

namespace Vs::Translate {

using SettleMaterial = std::function<void(XCAFDoc_VisMaterial& material)>;

/// Completes the reading of a file whose parts consist of triangles, as in the mesh formats: `settle` is
/// called for each material, the parts get their base colours, and each body gets the mesh that is shown.
/// Normals in the file are kept; if it has none, they are smooth where triangles meet at less than 30
/// degrees. Throws Unreadable.
void takeMeshes(Reading& reading, Reporter& reporter, const SettleMaterial& settle);
/// The materials stay as they are.
void takeMeshes(Reading& reading, Reporter& reporter);

} // namespace Vs::Translate
