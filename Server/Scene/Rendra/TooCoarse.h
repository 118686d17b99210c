#pragma once

#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/Rendra/DrawList.h"

#include <vector>

namespace Rendra {

/// The bodies in view whose meshes deviate by more than `pixels` from the exact shape, and the finer form
/// that doesn't. Depends on the camera and the meshes alone, not on what is shown now.
std::vector<Vs::Scene::FinerWish> tooCoarse(const DrawList& list, const Vs::Scene::Projection& projection,
                                            double pixels);

} // namespace Rendra
