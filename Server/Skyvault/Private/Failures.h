#pragma once

#include "Server/Skyvault/Drive.h"

#include <string>

/// Details of the last failure of each kind, which complete the text for the user. Main thread only.
namespace Vs::Cloud::Failures {

/// Returns the result's state.
CloudErrorState note(const DriveResult& result);
CloudErrorState note(CloudErrorState state, std::wstring detail);
/// Empty if there are none.
std::wstring detail(CloudErrorState state);

} // namespace Vs::Cloud::Failures
