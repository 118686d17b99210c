#include "UI/Commands/Documents/DocumentSets.h"

#include "Server/DataModel/IDocMgmtHandler.h"
#include "UI/Base/Session/SessionMgr.h"

namespace Vu::Commands {

std::set<Vs::Document*> allDocuments()
{
    const std::vector<Vs::Document*> open = SessionMgr::get()->openDocuments();
    return {open.begin(), open.end()};
}

bool closingAgreed(const std::set<Vs::Document*>& documents)
{
    return Vs::IDocMgmtHandler::notifyPreClosingDocuments(documents) != Vs::eDocMgmtStop &&
           Vs::IDocMgmtHandler::notifyClosingDirtyDocuments(documents) != Vs::eDocMgmtStop;
}

} // namespace Vu::Commands
