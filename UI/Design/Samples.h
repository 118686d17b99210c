#pragma once

#include "Server/Base/Status.h"

#include <string>
#include <vector>

namespace Vu::Design {

/// A new document with a small coloured assembly of primitives, shown; if tests have set a design of
/// their own (Vs::SegmentFinder::existingAsset), its parts go into that. It counts as unchanged: it can
/// be recreated at any time, so closing it needs no question.
void makeSample(Vs::Status& status);

/// The names of the samples, as `openSample` takes them: L"Flange".
[[nodiscard]] std::vector<std::wstring> sampleNames();
/// A new document with that sample, shown and unchanged; an error if there is none with that name.
void openSample(const std::wstring& name, Vs::Status& status);

} // namespace Vu::Design
