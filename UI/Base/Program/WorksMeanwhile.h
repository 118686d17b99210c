#pragma once

namespace Vu {

/// The property of a widget that takes, if it is true, what the user does with it and its children while the
/// program is busy and the rest of the window isn't heard.
constexpr const char* kWorksMeanwhile = "worksMeanwhile";

} // namespace Vu
