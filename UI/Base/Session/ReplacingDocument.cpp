#include "UI/Base/Session/ReplacingDocument.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"

#include <set>

namespace Vu {
namespace {

std::set<std::wstring>& commands()
{
    static std::set<std::wstring> identifiers;
    return identifiers;
}

} // namespace

void ReplacingDocument::byCommand(const std::wstring& id)
{
    commands().insert(id);
}

bool ReplacingDocument::isCommand(const CommandDefinition* definition)
{
    return commands().contains(definition->id());
}

bool ReplacingDocument::agreed(const std::wstring& openedFile)
{
    const DocumentSession* session = SessionMgr::get()->activeDocumentSession();
    Vs::Document* document = session ? session->document() : nullptr;
    if (!document || !document->isDirty(false) || Application::testing() || !MessageBox::canAsk())
        return true;
    if (!openedFile.empty() && Vs::DocumentMgr::get()->document(openedFile) == document)
        return true;
    return Vs::IDocMgmtHandler::notifyPreClosingDocuments({document}) != Vs::eDocMgmtStop &&
           Vs::IDocMgmtHandler::notifyClosingDirtyDocuments({document}) != Vs::eDocMgmtStop;
}

void ReplacingDocument::executeLater(CommandDefinition* definition, CommandContext context)
{
    Application::get()->deferredTasks()->post([definition, context = std::move(context)] {
        if (agreed(context.argumentAsString(CommandContext::pathArgumentName())))
            definition->executeLater(context);
    });
}

} // namespace Vu
