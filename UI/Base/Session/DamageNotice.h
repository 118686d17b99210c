#pragma once

#include "Server/DataModel/DocumentEvents.h"

namespace Vu {

/// Puts among the notifications what was to be warned of when a file was read, in a run with a window: what a
/// damaged file lacks, part by part. A line of text answers with it besides. Main thread only.
class DamageNotice : private Vs::DocumentEventSite
{
public:
    /// Tells of those that are open and those that come.
    DamageNotice();

    /// For a run with a window, up to its end; once.
    static void begin();

private:
    void documentOpened(Vs::DocumentEvent* event) override { tell(*event->document()); }
    void documentClosed(Vs::DocumentEvent* event) override;
    static void tell(const Vs::Document& document);
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
