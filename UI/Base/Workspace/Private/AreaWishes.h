#pragma once

#include "Server/Base/OptionGroup.h"

#include <string>

namespace Vu {

class Area;

/// What the user wants to see of a layout's areas, kept in UIBaseOptionGroup apart from what the areas show:
/// a form of the layout may have no room for one of them, and the wish is still there when another form has.
/// Main thread only.
class AreaWishes
{
public:
    /// Shows and hides the areas at and below `root` as the user wants them.
    static void apply(Area& root);
    /// The same for the areas of one option.
    static void apply(Area& root, const std::string& option);
    /// Takes what the area shows for the user's wish, if it is one of those whose commands don't write it:
    /// command line, toolbars, navigation bar.
    static void keep(const Area& area);
    /// The same for all below, and for the feed: a layout has come that knows of no wishes.
    static void keepAll(const Area& root);
};

} // namespace Vu
