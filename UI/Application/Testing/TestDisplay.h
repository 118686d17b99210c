#pragma once

#include "Server/Base/ChildProcess.h"

namespace Quillet {

/// Where a test run shows its windows: the desktop that it was started in, or else a virtual one of its own
/// (Xvfb), which ends with this object.
class TestDisplay
{
public:
    /// Throws std::runtime_error if there is neither.
    TestDisplay();

private:
    Vs::ChildProcess m_server;
};

} // namespace Quillet
