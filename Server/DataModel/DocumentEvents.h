#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/Status.h"

namespace Vs {

class Document;

class DocumentEvent : public Implements<DocumentEvent, Event>
{
public:
    explicit DocumentEvent(Document* document, Timing timing = Timing::After)
        : Implements(timing), m_document(document)
    {
    }
    Document* document() const { return m_document; }

private:
    Document* m_document;
};

/// What failed with a document, in one error.
class DocumentFailureEvent : public Implements<DocumentFailureEvent, DocumentEvent>
{
public:
    DocumentFailureEvent(Document* document, const Status& status)
        : Implements(document, Timing::After), m_status(status)
    {
    }
    const Status& status() const { return m_status; }

private:
    const Status& m_status;
};

/// What happens to documents. Each operation does nothing unless overridden.
class DocumentEventSite : public EventSite
{
public:
    virtual void documentCreated(DocumentEvent*) {}
    virtual void documentOpened(DocumentEvent*) {}
    /// A document that was opened by the program itself, not by a command, and has no session yet.
    virtual void documentOpenedInBackground(DocumentEvent*) {}
    virtual void documentSaved(DocumentEvent*) {}
    /// Document::save or saveAs gave up; the document is unchanged. The caller may be about to clear the
    /// status, so this is where the user gets informed.
    virtual void documentSaveFailed(DocumentFailureEvent*) {}
    /// Something shown about the document changed: its name, its dirty state, its active asset.
    virtual void documentUpdated(DocumentEvent*) {}
    virtual void documentActiveAssetChanged(DocumentEvent*) {}
    /// With timing Before, while everything of the document still exists; with After, when DocumentMgr no
    /// longer lists it and its assets are about to be destroyed.
    virtual void documentClosed(DocumentEvent*) {}
};

class DocumentEventSource : public EventSource<DocumentEventSite>
{
public:
    static DocumentEventSource* get()
    {
        static auto* const source = new DocumentEventSource;
        return source;
    }

    void fireDocumentCreated(DocumentEvent* event) { fire(&DocumentEventSite::documentCreated, event); }
    void fireDocumentOpened(DocumentEvent* event) { fire(&DocumentEventSite::documentOpened, event); }
    void fireDocumentOpenedInBackground(DocumentEvent* event)
    {
        fire(&DocumentEventSite::documentOpenedInBackground, event);
    }
    void fireDocumentSaved(DocumentEvent* event) { fire(&DocumentEventSite::documentSaved, event); }
    void fireDocumentSaveFailed(DocumentFailureEvent* event)
    {
        fire(&DocumentEventSite::documentSaveFailed, event);
    }
    void fireDocumentUpdated(DocumentEvent* event) { fire(&DocumentEventSite::documentUpdated, event); }
    void fireDocumentActiveAssetChanged(DocumentEvent* event)
    {
        fire(&DocumentEventSite::documentActiveAssetChanged, event);
    }
    void fireDocumentClosed(DocumentEvent* event) { fire(&DocumentEventSite::documentClosed, event); }
};

} // namespace Vs
