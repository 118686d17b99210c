#include "UI/Commands/Shells/DeferredSessionReleaseTask.h"

namespace Vu::Commands {
namespace {
constexpr int kPriority = 1;
}

DeferredSessionReleaseTask::DeferredSessionReleaseTask(Vs::Lockable* document)
    : Implements(kPriority), m_document(Vs::UniqueString::find("DeferredSessionReleaseTask", true), document)
{
}

bool DeferredSessionReleaseTask::run()
{
    m_document.target(nullptr);
    return true;
}

} // namespace Vu::Commands
