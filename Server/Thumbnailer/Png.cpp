#include "Server/Thumbnailer/Png.h"

#include <algorithm>
#include <array>
#include <png.h>
#include <stdexcept>

namespace Thumbnailer {
namespace {

constexpr uint32_t kLargestSide = 4096;
constexpr size_t kChannels = 4;

/// The library's own, which is freed whatever happens.
class Image
{
public:
    Image() { m_image.version = PNG_IMAGE_VERSION; }
    ~Image() { png_image_free(&m_image); }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
    png_image* operator->() { return &m_image; }
    png_image* get() { return &m_image; }
    void check(int done) const
    {
        if (!done)
            throw std::runtime_error(m_image.message);
    }

private:
    png_image m_image{};
};

/// The mean of a box of pixels; clear ones have no colour, and give none.
std::array<uint8_t, kChannels> meanOf(const Picture& picture, uint32_t left, uint32_t right, uint32_t top,
                                      uint32_t bottom)
{
    uint64_t sums[kChannels] = {};
    for (uint32_t y = top; y < bottom; ++y)
        for (uint32_t x = left; x < right; ++x) {
            const uint8_t* pixel = &picture.pixels[(size_t(y) * picture.width + x) * kChannels];
            for (size_t channel = 0; channel < 3; ++channel)
                sums[channel] += uint64_t(pixel[channel]) * pixel[3];
            sums[3] += pixel[3];
        }
    const uint64_t count = uint64_t(right - left) * (bottom - top), opacity = std::max<uint64_t>(sums[3], 1);
    std::array<uint8_t, kChannels> mean{};
    for (size_t channel = 0; channel < 3; ++channel)
        mean[channel] = static_cast<uint8_t>((sums[channel] + opacity / 2) / opacity);
    mean[3] = static_cast<uint8_t>((sums[3] + count / 2) / count);
    return mean;
}

} // namespace

Picture readPng(const std::string& bytes)
{
    Image image;
    image.check(png_image_begin_read_from_memory(image.get(), bytes.data(), bytes.size()));
    Picture picture{image->width, image->height, {}};
    if (picture.width > kLargestSide || picture.height > kLargestSide)
        throw std::runtime_error("the picture is too large");
    image->format = PNG_FORMAT_RGBA;
    picture.pixels.resize(PNG_IMAGE_SIZE(*image.get()));
    image.check(png_image_finish_read(image.get(), nullptr, picture.pixels.data(), 0, nullptr));
    return picture;
}

Picture scaledDown(const Picture& picture, uint32_t side)
{
    const uint32_t longer = std::max(picture.width, picture.height);
    if (longer <= side)
        return picture;
    const auto scaled = [&](uint32_t length) {
        return std::max<uint32_t>(1, static_cast<uint32_t>(uint64_t(length) * side / longer));
    };
    Picture small{scaled(picture.width), scaled(picture.height), {}};
    small.pixels.reserve(size_t(small.width) * small.height * kChannels);
    const auto edge = [](uint32_t at, uint32_t all, uint32_t of) {
        return static_cast<uint32_t>(uint64_t(at) * of / all);
    };
    for (uint32_t y = 0; y < small.height; ++y)
        for (uint32_t x = 0; x < small.width; ++x) {
            const auto mean =
                meanOf(picture, edge(x, small.width, picture.width), edge(x + 1, small.width, picture.width),
                       edge(y, small.height, picture.height), edge(y + 1, small.height, picture.height));
            small.pixels.insert(small.pixels.end(), mean.begin(), mean.end());
        }
    return small;
}

void writePng(const Picture& picture, const std::string& path)
{
    Image image;
    image->width = picture.width;
    image->height = picture.height;
    image->format = PNG_FORMAT_RGBA;
    image.check(png_image_write_to_file(image.get(), path.c_str(), 0, picture.pixels.data(), 0, nullptr));
}

} // namespace Thumbnailer
