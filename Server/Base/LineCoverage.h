#pragma once

#include <cstdint>
#include <map>
#include <string>

/// How often each text command has run, for those who want to know what their transcripts cover. Main thread.
namespace Vs::LineCoverage {

/// From now on the runs are counted, including those made by a script or another line.
void begin();
/// By "Area.Name"; without those that never ran.
[[nodiscard]] const std::map<std::wstring, uint64_t>& counts();
/// The command has run, by "Area.Name".
void count(const std::wstring& area, const std::wstring& name);

} // namespace Vs::LineCoverage
