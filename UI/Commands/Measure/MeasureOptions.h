#pragma once

#include <optional>

/// What the measuring tool keeps from one use to the next among the user's options.
namespace Vu::Commands::MeasureOptions {

/// Creates them, if there are none yet.
void make();
/// The bits of EMeasureTypeBit to begin with: those given, kept where nothing is yet, or else those kept.
unsigned measureTypes(std::optional<unsigned> given);
/// The bits of Vs::ESelectionType to begin with.
unsigned selectionTypes();
void keep(unsigned selectionTypes, unsigned measureTypes);

} // namespace Vu::Commands::MeasureOptions
