#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/Geometry/GkVector3d.h"

#include <array>
#include <memory>
#include <string>

namespace Vs::Scene {

class Panorama;

/// What surrounds a model: it lights the bodies, is reflected in them, and is seen behind them as a dome.
/// Made from a few numbers, not from pictures, so it costs nothing and has detail at any scale; or from a
/// panorama that the user has chosen. All colours are linear. Directions are those of a scene whose up is z.
struct Environment
{
    /// A light at infinity, which has a direction but no position.
    struct Lamp
    {
        GkVector3d direction; ///< Towards the lamp, length one.
        Colour colour;        ///< The light that a white face turned towards it reflects.
        float size;           ///< Sine of half its angular size: how soft its highlights are.
    };

    std::wstring id;
    Colour zenith, horizon; ///< The sky at the zenith, and at the horizon.
    Colour ground, nadir;   ///< The ground at the horizon, and straight below.
    /// How the colours change from the horizon upwards and downwards, as powers of the elevation's sine.
    float skyFall, groundFall;
    float haze;  ///< Half the height of the mist at the horizon, as a sine.
    float glow;  ///< How bright the sky is around the first lamp.
    float stars; ///< How bright they are; 0 for none.
    std::array<Lamp, 3> lamps;
    Colour plain; ///< The background without a dome.
    Colour line;  ///< Of edges seen against the background.
    Colour grid;
    /// Null for most; the numbers above then tell what it looks like on average.
    std::shared_ptr<const Panorama> panorama;

    /// Whether lines seen against the background must be light.
    bool isDark() const { return line.g > 0.3f; }
    /// The colour of the layout grid's lines, as visible on this environment's ground.
    const Colour& gridColor() const { return grid; }
    /// The linear colour seen in a direction of unit length, without the lamps. With a `blur` from 0 to 1 it
    /// is averaged around the direction, as in a rough mirror. A panorama includes its lamps.
    [[nodiscard]] Colour seen(const GkVector3d& direction, float blur = 0) const;
    /// The same as light that a rough face scatters: without the lamps of a panorama.
    [[nodiscard]] Colour scattered(const GkVector3d& direction) const;
};

} // namespace Vs::Scene
