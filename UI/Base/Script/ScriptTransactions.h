#pragma once

#include <cstddef>
#include <string>

/// The transactions that lines of the area "Script" have begun and not ended yet. Main thread only.
namespace Vu::ScriptTransactions {

[[nodiscard]] size_t open();
/// Rolls back all but the outermost `count`, for a run that finished without ending them. Returns one message
/// that names them; empty if there were none.
[[nodiscard]] std::wstring takeBackTo(size_t count);

} // namespace Vu::ScriptTransactions
