#pragma once

#include "Server/Base/Require.h"
#include "Server/Base/SerializableObject.h"

namespace Vs {
class Document;
}

namespace Vu {

/// The user interface's view of an open document. Owned by SessionMgr. As text it is the document's path, or
/// the identifier of a document without one.
class DocumentSession : public Vs::Implements<DocumentSession, Vs::SerializableObject>
{
public:
    explicit DocumentSession(Vs::Document* document) : m_document(document)
    {
        Vs::require(document != nullptr, "a session is that of a document");
    }

    Vs::Document* document() const { return m_document; }

    /// Whether the document has never been saved by its user; a translated one counts as such.
    bool firstSave() const { return m_firstSave; }
    void firstSave(bool value) { m_firstSave = value; }

    /// Whether the user has closed the document, which disappears as soon as what runs now has ended. No list
    /// shows it.
    bool leaving() const;
    /// Told by whoever keeps a lock on a document that was closed only until then: each lock once, and once
    /// when it is about to be released.
    void lockedForNow() { ++m_locksForNow; }
    void unlockedForNow() { --m_locksForNow; }

    std::wstring serialize() const override;
    std::string factoryName() const override;

private:
    Vs::Document* m_document;
    unsigned m_locksForNow = 0;
    bool m_firstSave = false;
};

/// Finds sessions by document path, name or identifier: "DocumentSessionSerializableObjectFactory" in
/// transcripts.
class DocumentSessionSerializableObjectFactory : public Vs::SerializableObjectFactory
{
public:
    static constexpr const char* kName = "DocumentSessionSerializableObjectFactory";
    DocumentSessionSerializableObjectFactory() : SerializableObjectFactory(kName) {}
    Vs::SerializableObject* deserialize(const std::wstring& text, bool create) override;
};

} // namespace Vu
