#pragma once

#include <functional>

/// Qt's application object, without which there are no requests to the network and no databases. A run that
/// needs neither is quicker without. Main thread only.
namespace Vs::QtApplication {

/// Who makes it, in a run that has none yet; null for nobody.
void maker(std::function<void()> maker);
/// Has it made if there is none.
void need();

} // namespace Vs::QtApplication
