#include "Server/Translate/MaterialColours.h"

#include "Server/DataModel/Kernel/Materials.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/Reading.h"

#include <Image_Texture.hxx>
#include <XCAFDoc_VisMaterial.hxx>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <stb_image.h>
#include <string_view>

namespace Vs::Translate {

namespace {

/// Larger pictures would take hundreds of megabytes while their mean is found.
constexpr int kLargestSide = 8192;
constexpr int64_t kMostPixels = 4096 * 4096;

double linear(uint8_t value)
{
    const double v = value / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

} // namespace

/// Throws Unreadable.
MaterialColours::Mean MaterialColours::meanOf(std::string_view bytes)
{
    const auto* data = reinterpret_cast<const stbi_uc*>(bytes.data());
    const int size = int(std::min<size_t>(bytes.size(), INT32_MAX));
    int width = 0, height = 0, channels = 0;
    if (!stbi_info_from_memory(data, size, &width, &height, &channels))
        throw Unreadable("is neither a PNG nor a JPEG picture");
    if (width <= 0 || height <= 0 || width > kLargestSide || height > kLargestSide ||
        int64_t(width) * height > kMostPixels)
        throw Unreadable("is too large, with " + std::to_string(width) + " x " + std::to_string(height) +
                         " pixels");
    const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
        stbi_load_from_memory(data, size, &width, &height, &channels, 4), &stbi_image_free);
    if (!pixels)
        throw Unreadable("is damaged");
    std::array<double, 256> linears;
    for (size_t i = 0; i < linears.size(); ++i)
        linears[i] = linear(uint8_t(i));
    const size_t count = size_t(width) * size_t(height);
    std::array<double, 4> sum = {};
    std::array<double, 3> values = {};
    for (size_t i = 0; i < count; ++i) {
        const stbi_uc* pixel = pixels.get() + 4 * i;
        const double opacity = pixel[3] / 255.0;
        for (size_t channel = 0; channel < 3; ++channel) {
            sum[channel] += opacity * linears[pixel[channel]];
            values[channel] += pixel[channel];
        }
        sum[3] += opacity;
    }
    Mean mean;
    for (size_t channel = 0; channel < 3; ++channel) {
        mean.values[channel] = values[channel] / (255.0 * double(count));
        // What is transparent has no colour.
        if (sum[3] > 0)
            mean.colour[channel] = sum[channel] / sum[3];
    }
    mean.colour[3] = sum[3] / double(count);
    return mean;
}

MaterialColours::Mean MaterialColours::readMean(const Image_Texture& picture)
{
    if (const Handle(NCollection_Buffer)& within = picture.DataBuffer(); !within.IsNull())
        return meanOf({reinterpret_cast<const char*>(within->Data()), within->Size()});
    const MappedFile file(picture.FilePath().ToCString());
    std::string_view bytes = file.bytes();
    if (picture.FileOffset() >= 0) {
        const auto offset = size_t(picture.FileOffset()), length = size_t(picture.FileLength());
        if (offset > bytes.size() || length > bytes.size() - offset)
            throw Unreadable("reaches beyond the end of the file");
        bytes = bytes.substr(offset, length);
    }
    return meanOf(bytes);
}

const MaterialColours::Mean& MaterialColours::meanOf(const Image_Texture& picture)
{
    const auto [found, isNew] = m_means.try_emplace(picture.TextureId().ToCString());
    if (!isNew)
        return found->second;
    try {
        found->second = readMean(picture);
    } catch (const Unreadable& fault) {
        const std::string name = std::filesystem::path(picture.FilePath().ToCString()).filename().string();
        m_faults.push_back("the picture " + (name.empty() ? "of a material" : "in " + name) + " " +
                           fault.what());
    }
    return found->second;
}

void MaterialColours::settle(XCAFDoc_VisMaterial& material)
{
    if (!material.HasPbrMaterial())
        return;
    XCAFDoc_VisMaterialPBR made = material.PbrMaterial();
    const auto taken = [&](Handle(Image_Texture) & picture) {
        const Mean mean = picture.IsNull() ? Mean() : meanOf(*picture);
        picture.Nullify();
        return mean;
    };
    const Mean base = taken(made.BaseColorTexture);
    const Quantity_Color& own = made.BaseColor.GetRGB();
    const auto colour = [&](double factor, size_t channel) {
        return Kernel::toShare(factor * base.colour[channel]);
    };
    const bool blended = material.AlphaMode() == Graphic3d_AlphaMode_Blend;
    made.BaseColor = {colour(own.Red(), 0), colour(own.Green(), 1), colour(own.Blue(), 2),
                      blended ? colour(double(made.BaseColor.Alpha()), 3) : 1.0f};
    const Mean surface = taken(made.MetallicRoughnessTexture);
    made.Roughness = Kernel::toShare(double(made.Roughness) * surface.values[1]);
    made.Metallic = Kernel::toShare(double(made.Metallic) * surface.values[2]);
    const bool glows =
        made.EmissiveFactor.x() > 0 || made.EmissiveFactor.y() > 0 || made.EmissiveFactor.z() > 0;
    const Mean light = glows ? taken(made.EmissiveTexture) : Mean();
    made.EmissiveTexture.Nullify();
    for (int i = 0; i < 3; ++i)
        made.EmissiveFactor[i] = Kernel::toShare(double(made.EmissiveFactor[i]) * light.colour[size_t(i)]);
    made.OcclusionTexture.Nullify();
    made.NormalTexture.Nullify();
    material.SetPbrMaterial(made);
}

} // namespace Vs::Translate
