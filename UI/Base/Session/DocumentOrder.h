#pragma once

#include "Server/DataModel/DocumentEvents.h"

#include <vector>

namespace Vu {

class DocumentOrderSite : public Vs::EventSite
{
public:
    /// The order of the open documents changed.
    virtual void documentOrderChanged() = 0;
};

/// The order of the window's tabs, and of all lists of open documents: that in which they were opened, until
/// a person moves one. What is opened later comes last. Main thread only.
class DocumentOrder : public Vs::EventSource<DocumentOrderSite>, private Vs::DocumentEventSite
{
public:
    static DocumentOrder* get();

    /// Sorts documents, given in the order of opening, into this order.
    void sort(std::vector<Vs::Document*>& documents) const;
    /// Moves an open document in front of another one; behind all others for null.
    void move(Vs::Document* document, const Vs::Document* before);

private:
    DocumentOrder();
    void documentClosed(Vs::DocumentEvent* event) override;

    std::vector<const Vs::Document*> m_moved; ///< Those that were open when one was moved last.
};

} // namespace Vu
