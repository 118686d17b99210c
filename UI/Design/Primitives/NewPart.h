#pragma once

#include <string>

namespace Vs {
class Asset;
}

namespace Vu::Design {

/// Selects a component (Component::id) that was just created, at the end of the present event and as a user
/// would: a recording includes the selection automatically. The view only moves if the component isn't
/// visible in it: then it glides to the component and its surroundings. Does nothing if the component is gone
/// by then, or its asset isn't the active one.
void presentLater(Vs::Asset& asset, std::string component);

} // namespace Vu::Design
