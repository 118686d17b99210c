#include "UI/Base/Program/ProgramLink.h"

#include "Server/Base/Task.h"
#include "UI/Base/Program/Application.h"

namespace Vu {
namespace {

/// Never destroyed: add-ins go at the very end.
ProgramLink::Follower& installed()
{
    static auto* const follower = new ProgramLink::Follower;
    return *follower;
}

} // namespace

void ProgramLink::follower(Follower follower)
{
    installed() = std::move(follower);
}

void ProgramLink::follow(const std::string& link)
{
    Application::get()->deferredTasks()->post([link] {
        if (installed())
            installed()(link);
    });
}

} // namespace Vu
