#pragma once

#include "Server/Base/Task.h"
#include "Server/Base/WeakRef.h"

namespace Vu {
class DocumentSession;
}

namespace Vu::Commands {

/// Keeps a document open until the main loop is past the current command. Safe to queue for one document many
/// times: every task holds a lock of its own count.
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
