#pragma once

#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Environment.h"
#include "Server/Scene/Rendra/Program.h"

namespace Rendra {

/// An environment as the programs take it. Its light without the lamps is kept as nine numbers a colour: the
/// irradiance as second-order spherical harmonics (Ramamoorthi and Hanrahan, 2001), which the smooth skies
/// here fit to about a hundredth.
class EnvironmentLight
{
public:
    /// Works out what belongs to the environment, unless it is the same as before.
    void prepare(const Vs::Scene::Environment& environment);

    /// Sets the uniforms of kSurroundings, and of the light, of the program that is current; those
    /// that it doesn't have are left out. `toEnvironment` turns directions of the camera's coordinates.
    void set(const Program& program, const GkMatrix3d& toEnvironment) const;

    /// Turns directions of world coordinates so that `up` becomes z; a scene whose up is z stays as it is.
    static GkMatrix3d orientation(const GkVector3d& up);

private:
    const Vs::Scene::Environment* m_environment = nullptr;
    float m_irradiance[9][3] = {};
    float m_least[3] = {}; ///< Light that reaches every side.
    float m_exposure = 1;
};

} // namespace Rendra
