#pragma once

#include <functional>

/// Qt's application object, without which there are no requests to the network and no databases. A run that
/// needs neither is quicker without. Main thread only.
namespace Vs::QtApplication {

/// Sets the function that makes it in a run that has none yet; null for none.
void maker(std::function<void()> maker);
/// Makes it if there is none.
void need();

} // namespace Vs::QtApplication
