#include "UI/Base/Session/SessionTranscriptingHelper.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Types/Uuid.h"

namespace Vu {

SessionTranscriptingHelper* SessionTranscriptingHelper::get()
{
    static auto* const helper = new SessionTranscriptingHelper;
    return helper;
}

void SessionTranscriptingHelper::addUuidMapping(const boost::uuids::uuid& recorded,
                                                const boost::uuids::uuid& actual)
{
    if (!recorded.is_nil() && !actual.is_nil())
        m_actual[recorded] = actual;
}

boost::uuids::uuid SessionTranscriptingHelper::actual(const boost::uuids::uuid& recorded) const
{
    const auto found = m_actual.find(recorded);
    return found == m_actual.end() ? recorded : found->second;
}

Vs::Document* SessionTranscriptingHelper::document(const std::wstring& text) const
{
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    const boost::uuids::uuid recorded = Vs::fromString(text);
    if (recorded.is_nil()) {
        Vs::Document* found = documents->bestDocument(text);
        return found ? found : documents->document(Vs::TranscriptMgr::get()->locate(text));
    }
    const boost::uuids::uuid wanted = actual(recorded);
    for (unsigned i = 0; i < documents->documents(); ++i)
        if (documents->document(i)->identifier() == wanted)
            return documents->document(i);
    return nullptr;
}

} // namespace Vu
