#include "UI/Commands/Shells/DeferredSessionReleaseTask.h"

#include "Server/DataModel/Document.h"
#include "UI/Base/Session/DocumentSession.h"

#include <utility>

namespace Vu::Commands {
namespace {

constexpr int kPriority = 1;

const Vs::UniqueString* lockSource()
{
    static const Vs::UniqueString* const source = Vs::UniqueString::find("DeferredSessionReleaseTask", true);
    return source;
}

} // namespace

DeferredSessionReleaseTask::DeferredSessionReleaseTask(DocumentSession* session)
    : Implements(kPriority), m_session(session)
{
    session->document()->addLock(lockSource());
    session->lockedForNow();
}

DeferredSessionReleaseTask::~DeferredSessionReleaseTask()
{
    DeferredSessionReleaseTask::run();
}

bool DeferredSessionReleaseTask::run()
{
    if (DocumentSession* session = std::exchange(m_session, {}).get()) {
        session->unlockedForNow();
        session->document()->releaseLock(lockSource());
    }
    return true;
}

} // namespace Vu::Commands
