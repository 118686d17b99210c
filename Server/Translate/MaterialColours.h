#pragma once

#include <Quantity_ColorRGBA.hxx>

#include <array>
#include <map>
#include <string>
#include <vector>

class Image_Texture;
class XCAFDoc_VisMaterial;

namespace Vs::Translate {

/// The one colour that is shown for a material of a glTF file: its base colour times the mean of its picture,
/// and what it gives off as light. It is opaque unless the material is blended.
class MaterialColours
{
public:
    Quantity_ColorRGBA of(const XCAFDoc_VisMaterial& material);

    /// What is wrong with pictures, which count as white.
    const std::vector<std::string>& faults() const { return m_faults; }

private:
    /// Red, green, blue and opacity, linear.
    using Mean = std::array<double, 4>;
    const Mean& meanOf(const Image_Texture& picture);

    std::map<std::string, Mean> m_means;
    std::vector<std::string> m_faults;
};

} // namespace Vs::Translate
