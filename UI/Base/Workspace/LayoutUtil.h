#pragma once

namespace Vu::LayoutUtil {

/// Whether the quick-access bar with the document commands is part of this program's layout.
inline bool displayQAT()
{
    // The desktop layout always has the bar; an edition for a tablet would not.
    return true;
}

} // namespace Vu::LayoutUtil
