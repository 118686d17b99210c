#include "Server/Base/Warning.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"

#include <cstdio>
#include <mutex>
#include <utility>
#include <vector>

namespace Vs {

namespace {

struct Handlers
{
    struct Entry
    {
        const WarningHandler* owner;
        std::function<void(const std::wstring&)> function;
    };

    std::mutex mutex;
    std::vector<Entry> all;
};

// Never destroyed: options are written, and may warn, until the very end of the process.
Handlers& handlers()
{
    static Handlers& handlers = *new Handlers;
    return handlers;
}

} // namespace

void warn(const std::wstring& message)
{
    std::function<void(const std::wstring&)> function;
    {
        std::lock_guard lock(handlers().mutex);
        if (!handlers().all.empty())
            function = handlers().all.back().function;
    }
    if (function)
        function(message);
    else
        std::fprintf(stderr, "%s\n", Strings::forTerminal(Strings::narrow(message)).c_str());
}

WarningHandler::WarningHandler(std::function<void(const std::wstring&)> function)
{
    assertMainThread();
    require(function != nullptr, "a handler of warnings has a function");
    std::lock_guard lock(handlers().mutex);
    handlers().all.push_back({this, std::move(function)});
}

WarningHandler::~WarningHandler()
{
    std::lock_guard lock(handlers().mutex);
    std::erase_if(handlers().all, [this](const auto& each) { return each.owner == this; });
}

} // namespace Vs
