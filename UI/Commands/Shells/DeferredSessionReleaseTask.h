#pragma once

#include "Server/Base/Task.h"
#include "Server/Base/WeakRef.h"

namespace Vu {
class DocumentSession;
}

namespace Vu::Commands {

/// Keeps a document open until the main loop has passed the current command. Can be queued for one document
/// many times: every task holds its own counted lock.
class DeferredSessionReleaseTask : public Vs::Implements<DeferredSessionReleaseTask, Vs::Task>
{
public:
    explicit DeferredSessionReleaseTask(DocumentSession* session);
    ~DeferredSessionReleaseTask() override;

    bool run() override;

private:
    /// Goes with its document, which may be closed without waiting for anybody.
    Vs::WeakRef<DocumentSession> m_session;
};

} // namespace Vu::Commands
