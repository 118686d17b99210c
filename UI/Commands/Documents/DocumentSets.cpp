#include "UI/Commands/Documents/DocumentSets.h"

#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/IDocMgmtHandler.h"

namespace Vu::Commands {

std::set<Vs::Document*> allDocuments()
{
    std::set<Vs::Document*> documents;
    Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < manager->documents(); ++i)
        documents.insert(manager->document(i));
    return documents;
}

bool closingAgreed(const std::set<Vs::Document*>& documents)
{
    return Vs::IDocMgmtHandler::notifyPreClosingDocuments(documents) != Vs::eDocMgmtStop &&
           Vs::IDocMgmtHandler::notifyClosingDirtyDocuments(documents) != Vs::eDocMgmtStop;
}

} // namespace Vu::Commands
