#include "UI/Commands/ActiveCommand.h"

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"

namespace Vu::Commands {

CommandBase* activeCommandOf(AssetSession* session)
{
    CommandMgr* manager = session ? session->commandManager() : nullptr;
    return manager ? manager->activeCommand() : nullptr;
}

void tellDocumentUpdated(const AssetSession& session)
{
    const DocumentSession* documentSession = session.documentSession();
    Vs::Document* document = documentSession ? documentSession->document() : nullptr;
    if (!document)
        return;
    Vs::DocumentEvent event(document, Vs::Timing::Notification);
    Vs::DocumentEventSource::get()->fireDocumentUpdated(&event);
}

} // namespace Vu::Commands
