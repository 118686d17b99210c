#include "UI/Commands/Camera/OrbitMode.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Commands/Camera/OrbitCmd.h"
#include "UI/Commands/Camera/OrbitReticle.h"
#include "UI/Commands/Resources.h"

#include <array>
#include <cmath>

namespace Vu::Commands {

using Vs::Scene::Camera;

namespace {

/// How far from a right angle, as a cosine, an axis may be to count as perpendicular.
constexpr double kPerpendicular = 1e-7;
constexpr double kCosineOf60Degrees = 0.5;

/// The axes along which the active asset stands; those of the world without one.
std::array<GkVector3d, 3> sceneAxes()
{
    const auto* settings =
        Vs::cast<Vs::CommonData::CommonDataAssetSettings>(ActiveAssetUtils::assetSettings());
    if (!settings)
        return {GkVector3d::kXAxis, GkVector3d::kYAxis, GkVector3d::kZAxis};
    const GkVector3d up = settings->sceneUp(), front = settings->sceneFront();
    return {up, front, front.crossProduct(up)};
}

/// About the screen's horizontal axis.
class OrbitAxisX : public OrbitMode
{
public:
    using OrbitMode::OrbitMode;
    void orbit(Camera* camera, double, double dy, double) override
    {
        if (!m_constrained)
            camera->orbit(0, dy);
        else if (dy != 0)
            camera->constrainedOrbit(dy, true, m_axis, camera->target());
    }
};

/// About the screen's vertical axis, or the model's up.
class OrbitAxisY : public OrbitMode
{
public:
    using OrbitMode::OrbitMode;
    void orbit(Camera* camera, double dx, double, double) override
    {
        if (!m_constrained)
            camera->orbit(dx, 0);
        else if (dx != 0)
            camera->constrainedOrbit(-dx, false, m_axis, camera->target());
    }
};

/// About the line of sight.
class OrbitAxisZ : public OrbitMode
{
public:
    using OrbitMode::OrbitMode;
    void orbit(Camera* camera, double, double, double dz) override
    {
        if (m_constrained)
            camera->roll(dz, camera->target());
        else
            camera->roll(dz);
    }
};

/// About both axes; in passing, about the pivot if there is one.
class OrbitFree : public OrbitMode
{
public:
    using OrbitMode::OrbitMode;
    void orbit(Camera* camera, double dx, double dy, double) override
    {
        if (!camera)
            return;
        const bool usePivot = m_owner->isPassiveCmd() && camera->pivotEnabled() &&
                              UIBaseOptionGroup::get()->cameraPivotEnabled();
        if (!m_constrained) {
            usePivot ? camera->orbitAroundPivot(dx, dy) : camera->orbit(dx, dy);
            return;
        }
        // Turning may move the target, so that it is asked for each time.
        const auto turnCentre = [&] { return usePivot ? camera->pivot() : camera->target(); };
        if (dy != 0)
            camera->constrainedOrbit(dy, true, m_axis, turnCentre());
        if (dx != 0)
            camera->constrainedOrbit(-dx, false, m_axis, turnCentre());
    }
};

/// Outside of everything: leaves the tool.
class OrbitNone : public OrbitMode
{
public:
    using OrbitMode::OrbitMode;
    void end() override { m_owner->leave(); }
    void orbit(Camera*, double, double, double) override {}
};

} // namespace

void OrbitMode::begin()
{
    m_reticle->hide();
}

void OrbitMode::end()
{
    if (!m_owner->isPassiveCmd())
        m_reticle->show();
}

std::map<int, std::unique_ptr<OrbitMode>> makeOrbitModes(OrbitCmd* owner, OrbitReticle* reticle,
                                                         bool constrained)
{
    std::map<int, std::unique_ptr<OrbitMode>> modes;
    modes[kOnVerticalTick] =
        std::make_unique<OrbitAxisX>(owner, reticle, Resources::OrbitXCursor(), constrained);
    modes[kOnHorizontalTick] =
        std::make_unique<OrbitAxisY>(owner, reticle, Resources::OrbitYCursor(), constrained);
    modes[kInRing] = std::make_unique<OrbitAxisZ>(owner, reticle, Resources::OrbitZCursor(), constrained);
    modes[kOutside] = std::make_unique<OrbitNone>(owner, reticle, Resources::OrbitExitCursor(), constrained);
    modes[kInCircle] = std::make_unique<OrbitFree>(owner, reticle, Resources::FreeOrbitCursor(), constrained);
    return modes;
}

GkVector3d computeUpForConstrainedOrbit(const Camera& camera)
{
    const std::array<GkVector3d, 3> axes = sceneAxes();
    const GkVector3d up = camera.up().normal(), right = camera.right().normal();
    // The best first.
    std::multimap<double, GkVector3d> byUp, byRight;
    for (const GkVector3d& axis : axes)
        for (const GkVector3d& way : {axis, -axis}) {
            byUp.emplace(-up.dotProduct(way), way);
            byRight.emplace(std::abs(right.dotProduct(way)), way);
        }
    GkVector3d result = byUp.begin()->second;
    // Axes come in opposite pairs: the third entry is the first of the second pair.
    const double nearest = byRight.begin()->first, second = std::next(byRight.begin(), 2)->first;
    if (nearest < kPerpendicular && second > kPerpendicular) {
        byUp.clear();
        for (auto pair = byRight.begin(); pair != std::next(byRight.begin(), 2); ++pair)
            byUp.emplace(-up.dotProduct(pair->second), pair->second);
        if (-byUp.begin()->first > kCosineOf60Degrees)
            result = byUp.begin()->second;
    }
    return result;
}

} // namespace Vu::Commands
