#pragma once

#include <cstdint>
#include <string>

namespace Thumbnailer {

/// Has the program that lies beside this one draw a model into a PNG file, without a window, in a process
/// that gets a minute of time and some gigabytes of memory. Throws std::runtime_error with the cause if there
/// is no picture.
void draw(const std::string& model, uint32_t side, const std::string& picture);

} // namespace Thumbnailer
