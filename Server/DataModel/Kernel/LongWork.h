#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"

#include <Message_ProgressIndicator.hxx>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Vs::Kernel {

/// How the kernel's work ended, if not by itself.
struct LongWorkEnd
{
    std::optional<EditFault> fault; ///< Crashed, Cancelled or TooLong.
    /// The work was abandoned where it was, so nobody may touch or destroy what it held (keepForever).
    bool abandoned = false;
};

/// Keeps an object from ever being destroyed. Any thread.
void keepForever(std::shared_ptr<void> thing);

/// Its result belongs to itself until it is complete: destroying it half made could crash as well.
using LongWorkBody = std::function<void(const Handle(Message_ProgressIndicator)&)>;

/// Runs work that may crash (CrashGuard), take long or never finish in a separate thread. If it isn't done at
/// once, the caller's thread shows progress under that title, and a cancel (Progress) or two minutes stop it:
/// through the progress indicator, where the kernel checks it; otherwise by failing its allocations, which
/// unwinds it (MemoryStop); and where it makes none, by abandoning it. Exceptions pass through. Main thread.
[[nodiscard]] LongWorkEnd runLongWork(const std::wstring& title, const LongWorkBody& work);

/// The same without a display: while the work runs, the caller's thread calls `goOn` some twenty times a
/// second with the fraction done; false cancels. Nothing else runs on the caller's thread meanwhile. It may
/// be empty. Any thread.
[[nodiscard]] LongWorkEnd runGuardedWork(const std::function<bool(double)>& goOn, const LongWorkBody& work);

} // namespace Vs::Kernel
