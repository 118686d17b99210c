#pragma once

#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Environment.h"
#include "Server/Scene/Rendra/Program.h"

namespace Rendra {

/// An environment in the form that shaders take. Its light without the lamps is stored as nine numbers per
/// colour: the irradiance as second-order spherical harmonics (Ramamoorthi and Hanrahan, 2001), which match
/// the smooth skies here to about a hundredth.
class EnvironmentLight
{
public:
    /// Computes the values of the environment, unless it is the same as before.
    void prepare(const Vs::Scene::Environment& environment);

    /// Sets the uniforms of kSurroundings, and of the light, for the current program; those that it doesn't
    /// have are skipped. `toEnvironment` rotates directions of the camera's coordinates; `stops` expose more.
    void set(const Program& program, const GkMatrix3d& toEnvironment, float stops = 0) const;

    /// Rotates directions of world coordinates so that `up` becomes z; a scene whose up is z is unchanged.
    static GkMatrix3d orientation(const GkVector3d& up);

private:
    const Vs::Scene::Environment* m_environment = nullptr;
    float m_irradiance[9][3] = {};
    float m_least[3] = {}; ///< Light that reaches every side.
    float m_exposure = 1;
};

} // namespace Rendra
