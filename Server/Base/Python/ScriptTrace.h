#pragma once

#include "Server/Base/ScriptDebugger.h"

namespace Vs::Python {

/// While this exists, ScriptDebugger is told of each line of Python that runs in a file that it follows.
/// Without a run of the debugger nothing is traced. The interpreter is held.
class ScriptTrace
{
public:
    ScriptTrace();
    ~ScriptTrace();
    ScriptTrace(const ScriptTrace&) = delete;
    ScriptTrace& operator=(const ScriptTrace&) = delete;

private:
    bool m_begins; ///< Scripts run scripts; the outermost one begins and ends it.
    const ScriptDebugger::Level m_level{0};
};

} // namespace Vs::Python
