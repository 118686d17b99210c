#pragma once

#include "Server/Skyvault/Drive.h"

#include <string>

/// What is known of the last failure of each kind, which completes the text for the person. Main thread only.
namespace Vs::Cloud::Failures {

/// Returns the result's state.
CloudErrorState note(const DriveResult& result);
CloudErrorState note(CloudErrorState state, std::wstring detail);
/// Empty if nothing is known.
std::wstring detail(CloudErrorState state);

} // namespace Vs::Cloud::Failures
