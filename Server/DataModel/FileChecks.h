#pragma once

#include "Server/Base/Task.h"
#include "Server/DataModel/DocumentEvents.h"

namespace Vs {

/// Told of open documents whose files were found to be damaged where opening didn't look. The event's status
/// says where, in one error; the document is unchanged.
class FileDamageEventSite : public EventSite
{
public:
    virtual void fileDamaged(DocumentFailureEvent* event) = 0;
};

class FileDamageEventSource : public EventSource<FileDamageEventSite>
{
public:
    static FileDamageEventSource* get()
    {
        static auto* const source = new FileDamageEventSource;
        return source;
    }
    void fireFileDamaged(DocumentFailureEvent* event) { fire(&FileDamageEventSite::fileDamaged, event); }
};

} // namespace Vs

/// Opening a native file reads what is shown and leaves the rest, above all the exact data. Whether that is
/// still as it was saved is checked afterwards, on a thread that gets the processor and the disk when nobody
/// else needs them.
namespace Vs::FileChecks {

/// The queue of results to report, which the main loop runs. Never destroyed.
[[nodiscard]] Tasks& results();

/// Waits until every file that was opened so far has been checked. Main thread.
void wait();

} // namespace Vs::FileChecks
