#pragma once

#include "Server/DataModel/DocumentEvents.h"

namespace Vu {

/// Turns the warnings from reading a file into notifications, in a run with a window: what a damaged file
/// lacks, part by part. A line of text also answers with them. Main thread only.
class DamageNotice : private Vs::DocumentEventSite
{
public:
    /// Reports on documents that are open and those opened later.
    DamageNotice();
    ~DamageNotice();

    /// Whether one has told of the document, so that nobody needs to be told again.
    [[nodiscard]] static bool hasTold(const Vs::Document& document);

    /// For a run with a window, up to its end; once.
    static void begin();

private:
    void documentOpened(Vs::DocumentEvent* event) override { tell(*event->document()); }
    void documentClosed(Vs::DocumentEvent* event) override;
    static void tell(const Vs::Document& document);
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
