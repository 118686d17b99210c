#pragma once

#include "Server/Scene/Panorama.h"

/// Reads the pixels of a Radiance picture, as Panorama::read tells. In a library of its own, VsPanorama10,
/// which is opened with the first such file.
extern "C" void quilletReadPanorama(const std::wstring& path, Vs::Scene::Panorama::Picture& picture);
