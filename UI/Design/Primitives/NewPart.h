#pragma once

#include <string>

namespace Vs {
class Asset;
}

namespace Vu::Design {

/// Selects a component (Component::id) that was just made, at the end of the present event and as a person
/// would: a recording takes down the selection by itself. The view moves only if the component isn't to be
/// seen there: then it glides to where the component and its surroundings are. Nothing happens if the
/// component is gone by then, or its asset isn't the active one.
void presentLater(Vs::Asset& asset, std::string component);

} // namespace Vu::Design
