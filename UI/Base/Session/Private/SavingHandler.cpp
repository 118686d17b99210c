#include "UI/Base/Session/Private/SavingHandler.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/SessionMgr.h"

namespace Vu {
namespace {

bool askForPath(Vs::Document& document)
{
    const Vs::DocumentType& type = *document.documentType();
    std::wstring name = document.displayName() + type.extension();
    if (!FileDialog::getFilenameForExport(type.name() + L" (*" + type.extension() + L")",
                                          localized("FileDialogSaveAs", "Save As"), name, L""))
        return false;
    document.path(name);
    return true;
}

} // namespace

SavingHandler::SavingHandler()
{
    Vs::DocumentEventSource::get()->subscribe(this);
}

SavingHandler::~SavingHandler()
{
    Vs::DocumentEventSource::get()->unsubscribe(this);
}

Vs::EDocMgmtOpCode SavingHandler::onSavingUnnamed(const Documents& documents)
{
    for (Vs::Document* document : documents)
        if (!document->isOnDisk() && FileDialog::canAsk() && !askForPath(*document))
            return Vs::eDocMgmtStop;
    return Vs::eDocMgmtNoOpinion;
}

void SavingHandler::documentSaved(Vs::DocumentEvent* event)
{
    const Vs::Document* document = event->document();
    DocumentSession* session = SessionMgr::get()->documentSession(event->document());
    if (!session->firstSave() || !document->isOnDisk())
        return;
    session->firstSave(false);
    RecentDocumentMgr::get()->add(document->path(), document->isCloud());
}

} // namespace Vu
