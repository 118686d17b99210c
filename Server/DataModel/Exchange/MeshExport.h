#pragma once

#include "Server/DataModel/Translator.h"

#include <functional>
#include <string>

namespace Vs {
class Component;
struct LengthUnit;
} // namespace Vs

namespace Vs::Exchange {

/// Writes every occurrence below a component as binary STL, its lengths in the unit, to a new file that takes
/// the place of an old one when it is complete. Bodies are meshed anew only for another refinement than the
/// one that they are shown with. Returns false with an error, or without one if `watch` returned false.
bool writeStl(const Component& root, const std::wstring& path, const TranslatorRefinement& refinement,
              const LengthUnit& unit, const std::function<bool(double)>& watch, Status& status);

} // namespace Vs::Exchange
