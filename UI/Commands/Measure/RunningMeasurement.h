#pragma once

#include <string>
#include <vector>

namespace Vu::Commands {

/// What is being measured in the active session, for a document that is reloaded and measured as before. Main
/// thread only.
class RunningMeasurement
{
public:
    /// As it is now.
    RunningMeasurement();
    /// Measures the same in the active session, which may be another one; what no longer exists is left out.
    /// Does nothing if nothing was being measured.
    void resume() const;

private:
    std::vector<std::wstring> m_picked; ///< The paths in the fields of the command; empty if none ran.
};

} // namespace Vu::Commands
