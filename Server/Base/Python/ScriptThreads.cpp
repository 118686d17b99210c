#include "Server/Base/Python/ScriptThreads.h"

#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Python/OwnCode.h"
#include "Server/Base/Warning.h"

#include <exception>
#include <string>

namespace Vs::Python {

namespace py = pybind11;

namespace {

/// Threads that are meant to outlive their script get a moment to finish by themselves.
constexpr const char* kWaitForThreads = R"(
import sys, time

def others():
    threading = sys.modules.get('threading')
    return [t for t in threading.enumerate() if t is not threading.main_thread()] if threading else []

latest = time.monotonic() + 5
for thread in others():
    if not thread.daemon:
        thread.join(max(0, latest - time.monotonic()))
left = others()
waited_for = ', '.join(t.name for t in left if not t.daemon)
)";

} // namespace

bool scriptThreadsEnded()
{
    try {
        py::dict names;
        execute(kWaitForThreads, names);
        const py::list left = names["left"];
        const std::wstring waitedFor = wideText(names["waited_for"]);
        if (!waitedFor.empty())
            warn(L"Scripts have left threads running, which end with the program: " + waitedFor + L'.');
        return left.empty();
    } catch (const std::exception&) {
        return false; // Scripts may have replaced Python's own modules by anything.
    }
}

} // namespace Vs::Python
