#pragma once

#include "Server/Scene/ViewFragment.h"

namespace Rendra {

/// A small scene with everything that most pictures have: a flat and a round face, a sharp edge and an
/// outline. Drawing it makes a driver compile what the first real picture would otherwise wait for. Main
/// thread only, as all scenes.
Vs::StrongRef<Vs::Scene::ViewFragment> makeRehearsal();

} // namespace Rendra
