#pragma once

#include "Server/Base/ChildProcess.h"

namespace Quillet {

/// The display for a test run's windows: the desktop it was started on, or else a virtual one of its own
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
