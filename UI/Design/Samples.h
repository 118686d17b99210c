#pragma once

#include "Server/Base/Status.h"

#include <string>
#include <vector>

namespace Vu::Design {

/// A new document with a small coloured assembly of primitives, shown; in a design that the tests use, its
/// parts. It counts as unchanged: it can be made again at any time, so that nobody need be asked when it
/// closes.
void makeSample(Vs::Status& status);

/// The names of the samples, by which `openSample` knows them: L"Flange".
[[nodiscard]] std::vector<std::wstring> sampleNames();
/// A new document with that sample, shown and unchanged; an error if there is none of the name.
void openSample(const std::wstring& name, Vs::Status& status);

} // namespace Vu::Design
