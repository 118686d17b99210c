#include "Server/Scene/RenderTarget.h"

#include "Server/Base/Require.h"
#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Types/LengthUnit.h"

#include <algorithm>

namespace Rendra {

namespace {

/// More makes any picture black or white.
constexpr double kMostStops = 10;

} // namespace

RenderTarget RenderTarget::current()
{
    Vs::assertMainThread();
    RenderTarget target;
    const Vs::Scene::GraphicsOptionGroup& options = *Vs::Scene::GraphicsOptionGroup::get();
    target.dome = options.displayDome();
    target.grid = options.showLayoutGrid();
    target.gridNumbers = options.showGridRefNumbers();
    target.axisCross = options.showAxisCross();
    target.scaleBar = options.showScaleBar();
    target.gridUnit = &Vs::LengthUnit::display();
    target.environment = &Vs::Scene::EnvironmentManager::getEnvManager()->activeEnvironment();
    target.exposure = float(std::clamp(options.exposure(), -kMostStops, kMostStops));
    target.selectionEffect = options.selectionEffectOption();
    const std::wstring tangent = options.tangentEdges();
    target.tangentEdges = tangent == L"full"   ? kFullTangentEdges
                          : tangent == L"none" ? kNoTangentEdges
                                               : kFaintTangentEdges;
    target.deviation = Vs::Scene::MeshQuality::current().deviation;
    return target;
}

} // namespace Rendra
