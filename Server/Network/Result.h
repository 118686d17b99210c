#pragma once

#include "Server/Network/CloudErrorState.h"

#include <string>

namespace Vs::Network {

/// How a request ended.
struct Result
{
    CloudErrorState state = CloudErrorState::Success;
    /// What, where and why, in English, without any secret; completes the text of the state. Empty if there
    /// is nothing to add.
    std::string detail;

    bool isOk() const { return state == CloudErrorState::Success; }
};

} // namespace Vs::Network
