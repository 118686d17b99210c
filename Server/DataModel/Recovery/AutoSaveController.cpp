#include "Server/DataModel/Recovery/AutoSaveController.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/AutoSaveDisabler.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Model/PlainFile.h"
#include "Server/DataModel/Native/DocumentSave.h"
#include "Server/DataModel/Native/Paths.h"
#include "Server/DataModel/Native/SafeFile.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Recovery/AutoSaveEvents.h"
#include "Server/DataModel/Recovery/Private/AutoSaver.h"
#include "Server/DataModel/Recovery/Private/DocumentDigests.h"
#include "Server/DataModel/Recovery/Private/RecoveryStore.h"
#include "Server/DataModel/TransactionMgr.h"

#include <algorithm>
#include <exception>
#include <set>

namespace Vs {

using Recovery::AutoSaver;
using Recovery::RecoveryStore;

class AutoSaveController::Data
{
public:
    RecoveryStore store;
    AutoSaver saver{store};
    std::set<std::string> copied; ///< Files that were copied and verified.
    bool keepsDiscarded = true;
    bool looks = false; ///< In the background.
};

namespace {

/// Passes on the file piece by piece.
template <class Take>
void readWhole(const std::string& path, Take&& take)
{
    PlainFile file(path);
    std::vector<char> piece(size_t(1) << 20);
    while (const size_t got = file.read(piece.data(), piece.size()))
        take(std::string_view(piece.data(), got));
}

void compare(const std::string& first, const std::string& second)
{
    PlainFile other(second);
    uint64_t size = 0;
    readWhole(first, [&](std::string_view bytes) {
        std::string there(bytes.size(), '\0');
        for (size_t done = 0; done < there.size();) {
            const size_t got = other.read(&there[done], there.size() - done);
            if (got == 0)
                break;
            done += got;
        }
        if (there != bytes)
            throw std::runtime_error("what can be read back isn't what was written");
        size += bytes.size();
    });
    if (size != other.size())
        throw std::runtime_error("what can be read back isn't what was written");
}

Document* openedFrom(const std::wstring& path)
{
    const auto wanted = Native::comparablePath(path);
    for (unsigned i = 0; i < DocumentMgr::get()->documents(); ++i) {
        Document* document = DocumentMgr::get()->document(i);
        if (document->isOnDisk() && Native::comparablePath(document->path()) == wanted)
            return document;
    }
    return nullptr;
}

// A source whose content is the same doesn't count as changed for having been copied back or touched.
void tellSource(Document& document, const Recovery::RecoveryRecord& record)
{
    const auto now = Recovery::SourceState::of(Strings::toBytes(record.source));
    const bool same = now.identity.inode != 0 && now.holdsTheSameAs(record.sourceState);
    DocumentSave::recoveredOf(document, record.source, same ? now.identity : record.sourceState.identity);
}

std::wstring nameOf(const std::wstring& recoveryPath)
{
    return PathInfo::Path(recoveryPath).stem().wstring();
}

void tellGone(const std::wstring& file)
{
    AutoSaveEvent event(file, {});
    AutoSaveEventSource::get()->fireAutoSavedRecoveryFileDeleted(&event);
}

void tellKept(const std::wstring& file, const std::wstring& message)
{
    AutoSaveEvent event(file, message);
    AutoSaveEventSource::get()->fireAutoSavedRecoveryFileKept(&event);
}

void tellDamaged(const std::string& file)
{
    const std::wstring path = Strings::fromBytes(file);
    AutoSaveEvent event(
        path, DataModel::localizedFormat(
                  "RecoveryFileDamaged",
                  "A recovery file is damaged and can't be opened. It was set aside as \"%1%\".", path));
    AutoSaveEventSource::get()->fireAutoSavedRecoveryFileDamaged(&event);
}

} // namespace

AutoSaveController::AutoSaveController() : m_data(std::make_unique<Data>()) {}
AutoSaveController::~AutoSaveController() = default;

AutoSaveController* AutoSaveController::get()
{
    static auto* const controller = new AutoSaveController;
    return controller;
}

void AutoSaveController::getAllRecoverFiles(std::vector<AutoSavedFileInfo>& files)
{
    assertMainThread();
    files.clear();
    try {
        files = m_data->store.left(tellDamaged);
    } catch (const std::exception&) {
        return; // Where there can be no folder, there are no files.
    }
    std::erase_if(files, [&](const AutoSavedFileInfo& file) {
        return m_data->saver.isAdopted(Strings::toBytes(file.autoSavedFile()));
    });
}

void AutoSaveController::lookForFiles()
{
    assertMainThread();
    m_data->looks = true;
    m_data->saver.wakeUp();
}

bool AutoSaveController::hasLooked() const
{
    return m_data->store.hasLooked();
}

bool AutoSaveController::deleteARecoveryFile(const std::wstring& recoveryPath, Reason reason)
{
    assertMainThread();
    const std::string file = Strings::toBytes(recoveryPath);
    if (!m_data->store.isOffered(file) || m_data->saver.isAdopted(file))
        return false;
    if (reason == Reason::Unwanted) {
        if (!m_data->store.discard(file)) {
            tellKept(recoveryPath,
                     DataModel::localizedFormat("RecoveryFileNotDeleted",
                                                "The recovery file of \"%1%\" can't be deleted.",
                                                nameOf(recoveryPath)));
            return false;
        }
    } else if (Document* document = openedFrom(recoveryPath)) {
        tellSource(*document, m_data->store.record(file));
        m_data->saver.adopt(*document, file);
    } else if (m_data->copied.contains(file)) {
        m_data->store.remove(file);
    } else {
        tellKept(recoveryPath,
                 DataModel::localizedFormat("RecoveryFileKept",
                                            "\"%1%\" was not recovered; its recovery file is kept.",
                                            nameOf(recoveryPath)));
        return false;
    }
    m_data->copied.erase(file);
    tellGone(recoveryPath);
    return true;
}

bool AutoSaveController::saveRecoveryFileAs(const std::wstring& recoveryPath, const std::wstring& newPath)
{
    assertMainThread();
    const std::string file = Strings::toBytes(recoveryPath);
    try {
        if (!m_data->store.isOffered(file))
            throw std::runtime_error("it is not a recovery file");
        if (isInRecoveryFolder(newPath))
            throw std::runtime_error("what lies in the folder of recovery files goes by itself");
        Native::SafeFile copy(Strings::toBytes(PathInfo::absolute(newPath).wstring()),
                              Native::FileCalls::current());
        readWhole(file, [&](std::string_view bytes) { copy.append(bytes.data(), bytes.size()); });
        copy.commit([&](const std::string& scratch) { compare(file, scratch); });
        m_data->copied.insert(file);
        return true;
    } catch (const std::exception& error) {
        m_data->copied.erase(file);
        tellKept(recoveryPath,
                 DataModel::localizedFormat("RecoveryCopyFailed",
                                            "\"%1%\" can't be saved: %2%. The recovery file is kept.",
                                            newPath, Strings::widen(error.what())));
        return false;
    }
}

bool AutoSaveController::isRecoveryFile(const std::wstring& path)
{
    return PathInfo::Path(path).extension() == Recovery::kSuffix && isInRecoveryFolder(path);
}

bool AutoSaveController::isInRecoveryFolder(const std::wstring& path)
{
    try {
        const std::string root = Native::comparablePath(PathInfo::recoveryDirectory().wstring()).string();
        return Native::comparablePath(path).string().starts_with(root + '/');
    } catch (const std::exception&) {
        return false;
    }
}

void AutoSaveController::lineBegins()
{
    m_data->saver.lineBegins();
}

void AutoSaveController::lineDone(const std::wstring& line)
{
    m_data->saver.lineDone(line);
}

size_t AutoSaveController::stepsBehind(const std::wstring& recoveryPath)
{
    return m_data->store.stepsBehind(Strings::toBytes(recoveryPath)).size();
}

void AutoSaveController::replaySteps(const std::wstring& recoveryPath, Document* document,
                                     const std::function<void(const std::wstring&)>& run)
{
    assertMainThread();
    const auto steps = m_data->store.stepsBehind(Strings::toBytes(recoveryPath));
    // Until everything is there the file that it comes from must stay.
    const AutoSaveDisabler disabler(document);
    for (const Recovery::StepJournal::Step& step : steps) {
        const std::vector<std::string> before = Recovery::digestsOf(*document);
        run(step.line);
        if (Recovery::digestsOf(*document) == step.digests)
            continue;
        TransactionMgr history(document->activeAsset());
        while (Recovery::digestsOf(*document) != before && history.canUndo(nullptr) &&
               history.undo(nullptr)) {
        }
        return;
    }
}

void AutoSaveController::declined(Document* document)
{
    assertMainThread();
    m_data->saver.declined(document);
}

void AutoSaveController::start()
{
    assertMainThread();
    m_data->saver.start();
}

void AutoSaveController::wakeUp(std::function<void()> callback)
{
    m_data->saver.onWakeUp(std::move(callback));
}

void AutoSaveController::lookOn()
{
    try {
        if (!m_data->looks || m_data->store.look())
            return;
    } catch (const std::exception&) {
        // Where there can be no folder, there are no files.
    }
    m_data->looks = false;
    AutoSaveEvent event({}, {});
    AutoSaveEventSource::get()->fireAutoSavedRecoveryFilesFound(&event);
}

bool AutoSaveController::work()
{
    assertMainThread();
    lookOn();
    return m_data->saver.work() || m_data->looks;
}

void AutoSaveController::withoutLoop(bool without)
{
    m_data->saver.withoutLoop(without);
}

bool AutoSaveController::writeAll()
{
    assertMainThread();
    return m_data->saver.writeAll();
}

void AutoSaveController::keepDiscarded(bool keep)
{
    m_data->keepsDiscarded = keep;
    m_data->store.keepDiscarded(keep);
}

void AutoSaveController::end()
{
    assertMainThread();
    m_data->saver.end(m_data->keepsDiscarded);
    m_data->store.end();
    m_data->copied.clear();
}

} // namespace Vs
