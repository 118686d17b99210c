#pragma once

#include "Server/Translate/Reading.h"

namespace Vs::Translate {

/// Completes a reading whose parts consist of triangles, as the mesh formats give them: their materials
/// become colours, and each body gets the mesh that is shown. Normals that the file holds are kept; where it
/// has none, they are made smooth where triangles meet at less than 30 degrees. Throws Unreadable.
void takeMeshes(Reading& reading, Reporter& reporter);

} // namespace Vs::Translate
