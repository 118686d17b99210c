#pragma once

namespace Vu::LayoutUtil {

/// Whether the quick-access bar with the document commands is part of this program's layout.
bool displayQAT();

} // namespace Vu::LayoutUtil
