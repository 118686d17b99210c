#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class Image_Texture;
class XCAFDoc_VisMaterial;

namespace Vs::Translate {

/// Replaces the pictures of a glTF file's materials by their means: by that of the base colour's picture, of
/// the picture of metal and roughness, and of what gives off light, each times the material's own factor.
/// What is out of its range is brought into it. A material is opaque unless it is blended.
class MaterialColours
{
public:
    /// Does nothing to a material that isn't physically based.
    void settle(XCAFDoc_VisMaterial& material);

    /// What is wrong with pictures, which count as white.
    const std::vector<std::string>& faults() const { return m_faults; }

private:
    struct Mean
    {
        std::array<double, 4> colour{1, 1, 1, 1}; ///< Red, green, blue and opacity, linear.
        std::array<double, 3> values{1, 1, 1};    ///< Of the channels as they are, from 0 to 1.
    };
    static Mean meanOf(std::string_view bytes);
    static Mean readMean(const Image_Texture& picture);
    const Mean& meanOf(const Image_Texture& picture);

    std::map<std::string, Mean> m_means;
    std::vector<std::string> m_faults;
};

} // namespace Vs::Translate
