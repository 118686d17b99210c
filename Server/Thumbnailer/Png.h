#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Thumbnailer {

/// Pixels of four bytes (red, green, blue, opacity), line by line from above.
struct Picture
{
    uint32_t width = 0, height = 0;
    std::vector<uint8_t> pixels;
};

/// Throws std::runtime_error if the bytes aren't a PNG of at most 4096 pixels on a side.
[[nodiscard]] Picture readPng(const std::string& bytes);

/// The same with at most `side` pixels on its longer side; each is the mean of those that it covers. A
/// smaller one stays as it is.
[[nodiscard]] Picture scaledDown(const Picture& picture, uint32_t side);

/// Throws std::runtime_error with the cause.
void writePng(const Picture& picture, const std::string& path);

} // namespace Thumbnailer
