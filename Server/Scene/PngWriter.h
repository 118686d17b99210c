#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace Vs::Scene {

struct Image;

/// What a PNG file says beside its pixels.
struct PngOptions
{
    bool keepsTransparency = true; ///< Without it, three bytes a pixel.
    int dotsPerInch = 0;           ///< With 0, nothing about its size in print.
};

/// Takes one part of a file after the other; false ends the writing.
using PngReceiver = std::function<bool(const char* bytes, size_t count)>;

/// Encodes a picture on all processors. Beside the picture itself this needs memory for a few hundred rows
/// only. Returns whether all parts were taken; throws std::bad_alloc.
[[nodiscard]] bool writePng(const Image& image, const PngOptions& options, const PngReceiver& receiver);

/// The same in memory.
[[nodiscard]] std::string pngOf(const Image& image);

} // namespace Vs::Scene
