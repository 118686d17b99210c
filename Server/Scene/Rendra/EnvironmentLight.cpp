#include "Server/Scene/Rendra/EnvironmentLight.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Rendra {

using Vs::Colour;
using Vs::Scene::Environment;

namespace {

constexpr double kPi = 3.14159265358979323846;
/// The fraction of the ground's light that counts; a model blocks part of it itself.
constexpr double kGroundPart = 0.38;
/// Bands of elevation, and steps around. The sum excludes the lamps, so that it is smooth.
constexpr int kBands = 64, kSteps = 16;

/// The real spherical harmonics of the bands 0 to 2.
void harmonics(const GkVector3d& d, double (&y)[9])
{
    y[0] = 0.282095;
    y[1] = 0.488603 * d.y;
    y[2] = 0.488603 * d.z;
    y[3] = 0.488603 * d.x;
    y[4] = 1.092548 * d.x * d.y;
    y[5] = 1.092548 * d.y * d.z;
    y[6] = 0.315392 * (3 * d.z * d.z - 1);
    y[7] = 1.092548 * d.x * d.z;
    y[8] = 0.546274 * (d.x * d.x - d.y * d.y);
}

} // namespace

void EnvironmentLight::prepare(const Environment& environment)
{
    if (m_environment == &environment)
        return;
    m_environment = &environment;
    double sum[9][3] = {};
    for (int band = 0; band < kBands; ++band)
        for (int step = 0; step < kSteps; ++step) {
            const double height = (band + 0.5) / kBands * 2 - 1; // equal bands of the height are equal areas
            const double around = 2 * kPi * (step + 0.5) / kSteps;
            const double width = std::sqrt(1 - height * height);
            const GkVector3d direction(width * std::cos(around), width * std::sin(around), height);
            const Colour seen = environment.scattered(direction);
            double y[9];
            harmonics(direction, y);
            const double weight = 4 * kPi / (kBands * kSteps) * (height < 0 ? kGroundPart : 1);
            for (int i = 0; i < 9; ++i) {
                sum[i][0] += seen.r * y[i] * weight;
                sum[i][1] += seen.g * y[i] * weight;
                sum[i][2] += seen.b * y[i] * weight;
            }
        }
    // The factors of the cosine lobe, divided by pi: they yield the light that a white face reflects.
    const double lobe[9] = {1, 2.0 / 3, 2.0 / 3, 2.0 / 3, 0.25, 0.25, 0.25, 0.25, 0.25};
    for (int i = 0; i < 9; ++i)
        for (int channel = 0; channel < 3; ++channel)
            m_irradiance[i][channel] = float(sum[i][channel] * lobe[i]);
    // A white face that looks up should be light grey, leaving room above for highlights. A night stays dark.
    const Environment::Lamp& key = environment.lamps[0];
    const double fromAbove = m_irradiance[0][1] * 0.282095 + m_irradiance[2][1] * 0.488603 +
                             m_irradiance[6][1] * 0.315392 * 2 + key.colour.g * key.direction.z;
    m_exposure = float(std::min(0.85, 0.76 / fromAbove));
    const Colour &second = environment.lamps[1].colour, &third = environment.lamps[2].colour;
    m_least[0] = 0.08f * second.r + 0.16f * third.r;
    m_least[1] = 0.08f * second.g + 0.16f * third.g;
    m_least[2] = 0.08f * second.b + 0.16f * third.b;
}

void EnvironmentLight::set(const Program& program, const GkMatrix3d& toEnvironment, float stops) const
{
    const Environment& environment = *m_environment;
    float turn[9];
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            turn[column * 3 + row] = float(toEnvironment.entry[row][column]);
    glUniformMatrix3fv(program.uniform("toEnvironment"), 1, GL_FALSE, turn);
    glUniform1f(program.uniform("haloGlow"), environment.glow);
    glUniform1f(program.uniform("stars"), environment.stars);
    glUniform1f(program.uniform("exposure"), m_exposure * std::exp2(stops));
    glUniform3fv(program.uniform("irradiance"), 9, &m_irradiance[0][0]);
    glUniform3fv(program.uniform("least"), 1, m_least);
    float directions[9], colours[9];
    for (size_t i = 0; i < 3; ++i) {
        const Environment::Lamp& lamp = environment.lamps[i];
        const GkVector3d& to = lamp.direction;
        const float values[] = {float(to.x), float(to.y), float(to.z)};
        const float light[] = {lamp.colour.r, lamp.colour.g, lamp.colour.b};
        std::copy(std::begin(values), std::end(values), directions + 3 * i);
        std::copy(std::begin(light), std::end(light), colours + 3 * i);
    }
    glUniform3fv(program.uniform("lampDirections"), 3, directions);
    glUniform3fv(program.uniform("lampColours"), 3, colours);
}

GkMatrix3d EnvironmentLight::orientation(const GkVector3d& up)
{
    GkMatrix3d turn;
    const GkVector3d axis = up.crossProduct(GkVector3d::kZAxis);
    if (axis.isZeroLength()) {
        if (up.z < 0)
            turn = GkMatrix3d::rotation(kPi, GkVector3d::kXAxis);
        return turn;
    }
    return GkMatrix3d::rotation(up.angleTo(GkVector3d::kZAxis), axis);
}

} // namespace Rendra
