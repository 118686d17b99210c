#include "Server/DataModel/AutoSaveDisabler.h"

#include "Server/Base/Require.h"

#include <map>

namespace Vs {

namespace {

// How many disablers there are for each document; for all documents under null.
std::map<const Document*, unsigned>& counts()
{
    static std::map<const Document*, unsigned> map;
    return map;
}

} // namespace

AutoSaveDisabler::AutoSaveDisabler(Document* document) : m_document(document)
{
    assertMainThread();
    ++counts()[document];
}

AutoSaveDisabler::~AutoSaveDisabler()
{
    const auto entry = counts().find(m_document);
    if (--entry->second == 0)
        counts().erase(entry);
}

bool AutoSaveDisabler::disabled(const Document* document)
{
    return counts().contains(nullptr) || counts().contains(document);
}

} // namespace Vs
