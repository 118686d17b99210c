#pragma once

#include "Server/Base/LockBase.h"
#include "Server/Base/Task.h"

namespace Vu::Commands {

/// Keeps a document open until the main loop is past the current command. Safe to queue for one document many
/// times: every task holds a lock of its own count.
class DeferredSessionReleaseTask : public Vs::Implements<DeferredSessionReleaseTask, Vs::Task>
{
public:
    explicit DeferredSessionReleaseTask(Vs::Lockable* document);

    bool run() override;

private:
    Vs::LockBase m_document;
};

} // namespace Vu::Commands
