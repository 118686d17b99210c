#pragma once

#include "Server/Scene/Environment.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs::Scene {

/// A picture of everything around a place, twice as wide as high, with linear colours: the first row is
/// straight up, the middle column is where y points to, and x lies to the right of it.
class Panorama
{
public:
    /// Colours of three channels, row by row from the top.
    struct Picture
    {
        int width = 0, height = 0;
        std::vector<float> channels;
    };

    /// Reads a Radiance picture (.hdr); a larger one than 2048 x 1024 is made smaller. Throws Vs::Exception
    /// with the file and the cause if it can't be read, is too large, isn't a panorama, or has no light.
    static std::shared_ptr<const Panorama> read(const std::wstring& path);

    /// The picture is scaled so that it lights a model like the other environments do.
    explicit Panorama(Picture picture);

    const Picture& picture() const { return m_picture; }
    /// The colour in a direction, as a satin face mirrors it.
    [[nodiscard]] Colour mirrored(const GkVector3d& direction) const;
    /// The same without the sun and lamps, and blurred: light that comes from everywhere.
    [[nodiscard]] Colour scattered(const GkVector3d& direction) const;
    /// The rest, as one lamp.
    const Environment::Lamp& lamp() const { return m_lamp; }

private:
    Picture m_picture, m_mirrored, m_scattered;
    Environment::Lamp m_lamp;
};

/// The environment that a panorama makes; its id is the file's path.
[[nodiscard]] Environment environmentOf(const std::wstring& path, std::shared_ptr<const Panorama> panorama);

} // namespace Vs::Scene
