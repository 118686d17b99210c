#pragma once

#include <epoxy/gl.h>

namespace Rendra {

/// The depth format of the framebuffer that is bound for reading: depths can only be copied between equal
/// formats. 0 if it isn't a known one.
[[nodiscard]] GLenum depthFormat(GLuint framebuffer);

} // namespace Rendra
