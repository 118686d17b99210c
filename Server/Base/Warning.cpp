#include "Server/Base/Warning.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"

#include <cstdio>
#include <mutex>

namespace Vs {

namespace {

struct Handler
{
    std::mutex mutex;
    std::function<void(const std::wstring&)> function;
};

// Never destroyed: options are written, and may warn, until the very end of the process.
Handler& handler()
{
    static Handler& handler = *new Handler;
    return handler;
}

} // namespace

void warn(const std::wstring& message)
{
    std::function<void(const std::wstring&)> function;
    {
        std::lock_guard lock(handler().mutex);
        function = handler().function;
    }
    if (function)
        function(message);
    else
        std::fprintf(stderr, "%s\n", Strings::forTerminal(Strings::narrow(message)).c_str());
}

void warningHandler(std::function<void(const std::wstring&)> function)
{
    assertMainThread();
    std::lock_guard lock(handler().mutex);
    handler().function = std::move(function);
}

} // namespace Vs
