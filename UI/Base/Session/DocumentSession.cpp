#include "UI/Base/Session/DocumentSession.h"

#include "Server/DataModel/Document.h"
#include "Server/Types/Uuid.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/SessionTranscriptingHelper.h"

namespace Vu {
namespace {
DocumentSessionSerializableObjectFactory theFactory;
}

bool DocumentSession::leaving() const
{
    // Who shows the document again has a lock of its own.
    return m_locksForNow > 0 && m_document->locks() == m_locksForNow;
}

std::wstring DocumentSession::serialize() const
{
    return m_document->isOnDisk() ? m_document->path() : Vs::fromUuid(m_document->identifier());
}

std::string DocumentSession::factoryName() const
{
    return DocumentSessionSerializableObjectFactory::kName;
}

Vs::SerializableObject* DocumentSessionSerializableObjectFactory::deserialize(const std::wstring& text, bool)
{
    return SessionMgr::get()->documentSession(SessionTranscriptingHelper::get()->document(text));
}

} // namespace Vu
