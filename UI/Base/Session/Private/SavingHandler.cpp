#include "UI/Base/Session/Private/SavingHandler.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentLocks.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/HeldFiles.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/DocumentWatch.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/SavedNotice.h"
#include "UI/Base/Session/SessionMgr.h"

#include <algorithm>

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

/// `question` has the place of the file in it.
Vs::EDocMgmtOpCode askAboutFile(Vs::Document& document, const std::wstring& question)
{
    MessageBox box(question);
    box.icon(kQuestionIcon);
    box.addButton(localized("OverwriteFile", "Overwrite"));
    box.addButton(localized("SaveElsewhere", "Save As..."), true);
    box.addButton(kCancelButton);
    enum Answer { kOverwrite = 0, kSaveAs = 1 };
    switch (box.show()) {
    case kOverwrite:
        return Vs::eDocMgmtGoOn;
    case kSaveAs:
        return askForPath(document) ? Vs::eDocMgmtGoOn : Vs::eDocMgmtStop;
    default:
        return Vs::eDocMgmtStop;
    }
}

/// The worst of the answers; no opinion where nobody can be asked. `question(place)` is what is asked.
template <class Question>
Vs::EDocMgmtOpCode askAboutFiles(const Vs::IDocMgmtHandler::Documents& documents, Question&& question)
{
    if (!MessageBox::canAsk())
        return Vs::eDocMgmtNoOpinion;
    for (Vs::Document* document : documents)
        if (askAboutFile(*document, question(FilePlace::shown(document->path()))) == Vs::eDocMgmtStop)
            return Vs::eDocMgmtStop;
    return Vs::eDocMgmtGoOn;
}

void tellSaved(const Vs::Document& document)
{
    // What was written may be a copy here alone, which nobody has saved it for.
    if (const auto place = FilePlace::of(document.path()); place && place->isSent)
        return;
    SavedNotice::show(localizedFormat("DocumentSaved", "\"%1%\" is saved", document.displayName()),
                      document.path());
}

} // namespace

SavingHandler::SavingHandler()
{
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(Vs::FileDamageEventSource::get(), this);
}

Vs::EDocMgmtOpCode SavingHandler::onSavingUnnamed(const Documents& documents)
{
    for (Vs::Document* document : documents)
        if (!document->isOnDisk() && FileDialog::canAsk() && !askForPath(*document))
            return Vs::eDocMgmtStop;
    return Vs::eDocMgmtNoOpinion;
}

Vs::EDocMgmtOpCode SavingHandler::onSavingReadOnlyFiles(const Documents& documents)
{
    // Its holder may have released it.
    const auto isFreeAgain = [](Vs::Document* document) {
        auto* locks = Vs::DocumentLocks::get();
        return Vs::HeldFiles::holder(document) && locks->takeAgain(document) && !document->isReadOnly();
    };
    if (std::all_of(documents.begin(), documents.end(), isFreeAgain))
        return Vs::eDocMgmtGoOn;
    return askAboutFiles(documents, [&](const std::wstring& place) {
        for (const Vs::Document* document : documents)
            if (const Vs::FileUser* user = Vs::HeldFiles::holder(document))
                return localizedFormat("SavingHeldFile", "%1%\nDo you want to overwrite \"%2%\" anyway?",
                                       DocumentWatch::whoHasIt(*user), place);
        return localizedFormat("SavingReadOnlyFile",
                               "\"%1%\" is write-protected.\nDo you want to overwrite it anyway?", place);
    });
}

Vs::EDocMgmtOpCode SavingHandler::onSavingChangedFiles(const Documents& documents)
{
    return askAboutFiles(documents, [](const std::wstring& place) {
        return localizedFormat("SavingChangedFile",
                               "Another program has changed \"%1%\" since it was opened.\nDo you want to "
                               "overwrite what it has written?",
                               place);
    });
}

void SavingHandler::documentSaved(Vs::DocumentEvent* event)
{
    const Vs::Document* document = event->document();
    if (document->isOnDisk() && Application::get()->mainWidget())
        tellSaved(*document);
    DocumentSession* session = SessionMgr::get()->documentSession(event->document());
    if (!session->firstSave() || !document->isOnDisk())
        return;
    session->firstSave(false);
    RecentDocumentMgr::get()->add(document->path(), document->isCloud());
}

void SavingHandler::fileDamaged(Vs::DocumentFailureEvent* event)
{
    Application::get()->inform(event->status().toString());
}

} // namespace Vu
