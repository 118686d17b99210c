#pragma once

#include "Server/DataModel/DocumentEvents.h"

#include <vector>

namespace Vu {

class DocumentOrderSite : public Vs::EventSite
{
public:
    /// The open documents stand in another order.
    virtual void documentOrderChanged() = 0;
};

/// The order in which the window's tabs, and all lists of open documents, have them: that in which they were
/// opened, until a person moves one. What is opened later comes last. Main thread only.
class DocumentOrder : public Vs::EventSource<DocumentOrderSite>, private Vs::DocumentEventSite
{
public:
    static DocumentOrder* get();

    /// Puts the documents, which come as they were opened, into this order.
    void sort(std::vector<Vs::Document*>& documents) const;
    /// Puts an open document in front of another one; behind all others for null.
    void move(Vs::Document* document, const Vs::Document* before);

private:
    DocumentOrder();
    void documentClosed(Vs::DocumentEvent* event) override;

    std::vector<const Vs::Document*> m_moved; ///< Those that were open when one was moved last.
};

} // namespace Vu
