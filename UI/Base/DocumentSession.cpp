#include "UI/Base/DocumentSession.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/SessionMgr.h"

namespace Vu {
namespace {
DocumentSessionSerializableObjectFactory theFactory;
}

std::wstring DocumentSession::serialize() const
{
    return m_document->isOnDisk() ? m_document->path() : m_document->displayName();
}

std::string DocumentSession::factoryName() const
{
    return DocumentSessionSerializableObjectFactory::kName;
}

Vs::SerializableObject* DocumentSessionSerializableObjectFactory::deserialize(const std::wstring& text, bool)
{
    return SessionMgr::get()->documentSession(text);
}

} // namespace Vu
