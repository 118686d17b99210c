#include "Server/DataModel/IDocMgmtHandler.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/Document.h"

#include <vector>

namespace Vs {

namespace {

std::vector<IDocMgmtHandler*>& handlers()
{
    static std::vector<IDocMgmtHandler*> list;
    return list;
}

// `silence` is the answer where no handler has an opinion.
template <class Argument>
EDocMgmtOpCode ask(EDocMgmtOpCode (IDocMgmtHandler::*question)(Argument), Argument argument,
                   EDocMgmtOpCode silence = eDocMgmtGoOn)
{
    // A handler may show a dialog, and while that runs handlers may come and go.
    const std::vector<IDocMgmtHandler*> asked = handlers();
    EDocMgmtOpCode answer = silence;
    for (IDocMgmtHandler* handler : asked) {
        const EDocMgmtOpCode own = (handler->*question)(argument);
        if (own == eDocMgmtStop)
            return eDocMgmtStop;
        if (own == eDocMgmtGoOn)
            answer = eDocMgmtGoOn;
    }
    return answer;
}

} // namespace

IDocMgmtHandler::IDocMgmtHandler()
{
    assertMainThread();
    handlers().push_back(this);
}

IDocMgmtHandler::~IDocMgmtHandler()
{
    std::erase(handlers(), this);
}

EDocMgmtOpCode IDocMgmtHandler::notifyPreClosingDocuments(const Documents& documents)
{
    return ask<const Documents&>(&IDocMgmtHandler::onPreClosingDocuments, documents);
}

EDocMgmtOpCode IDocMgmtHandler::notifySavingMigratedFiles(const Documents& documents)
{
    return ask<const Documents&>(&IDocMgmtHandler::onSavingMigratedFiles, documents);
}

EDocMgmtOpCode IDocMgmtHandler::notifyClosingDirtyDocuments(const Documents& documents)
{
    Documents dirty;
    for (Document* document : documents)
        if (document->isDirty(false))
            dirty.insert(document);
    if (dirty.empty())
        return eDocMgmtGoOn;
    return ask<const Documents&>(&IDocMgmtHandler::onClosingDirtyDocuments, dirty);
}

EDocMgmtOpCode IDocMgmtHandler::notifySavingFirstTime(const Documents& documents)
{
    return ask<const Documents&>(&IDocMgmtHandler::onSavingFirstTime, documents);
}

EDocMgmtOpCode IDocMgmtHandler::notifySavingReadOnlyFiles(const Documents& documents)
{
    return ask<const Documents&>(&IDocMgmtHandler::onSavingReadOnlyFiles, documents, eDocMgmtNoOpinion);
}

EDocMgmtOpCode IDocMgmtHandler::notifySavingChangedFiles(const Documents& documents)
{
    return ask<const Documents&>(&IDocMgmtHandler::onSavingChangedFiles, documents, eDocMgmtNoOpinion);
}

EDocMgmtOpCode IDocMgmtHandler::notifyEditingReadOnlyDocuments(const Documents& documents)
{
    return ask<const Documents&>(&IDocMgmtHandler::onEditingReadOnlyDocuments, documents);
}

EDocMgmtOpCode IDocMgmtHandler::notifySavingUnnamed(const Documents& documents)
{
    return ask<const Documents&>(&IDocMgmtHandler::onSavingUnnamed, documents);
}

EDocMgmtOpCode IDocMgmtHandler::notifyAssetDirtyFirstTime(Asset* asset)
{
    return ask<Asset*>(&IDocMgmtHandler::onAssetDirtyFirstTime, asset);
}

} // namespace Vs
