#include "Server/DataModel/Recovery/Private/Snapshot.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/Native/DocumentContent.h"
#include "Server/DataModel/Native/DocumentFile.h"
#include "Server/DataModel/Native/DocumentSave.h"
#include "Server/DataModel/Native/ReadBack.h"
#include "Server/DataModel/Native/SafeFile.h"
#include "Server/DataModel/Recovery/Private/DocumentDigests.h"
#include "Server/DataModel/Recovery/Private/FolderCalls.h"
#include "Server/DataModel/Recovery/Private/RecoveryStore.h"
#include "Server/Types/Uuid.h"

#include <filesystem>

namespace Vs::Recovery {

namespace fs = std::filesystem;

namespace {

// A file's name that a person finds the document's in: Save As proposes it.
std::string nameFor(const std::wstring& displayName)
{
    constexpr size_t kMost = 200; // bytes; file systems take 255 with the suffix
    std::string name;
    for (const wchar_t each : displayName) {
        const bool unfit = each < L' ' || each == L'/' || each == 0x7f || (name.empty() && each == L'.');
        const std::string letter = Strings::toBytes(std::wstring(1, unfit ? L'_' : each));
        if (name.size() + letter.size() > kMost)
            break;
        name += letter;
    }
    return (name.empty() ? "_" : name) + kSuffix;
}

// The folders may be new themselves, and what another file is let go for must not be lost with one of them.
void flushAbove(const fs::path& folder, Native::FileCalls& calls)
{
    const fs::path session = folder.parent_path(), root = session.parent_path();
    for (const fs::path& each : {session, root, root.parent_path()})
        FolderCalls::flush(each.string(), calls);
}

RecoveryRecord recordOf(const Document& document)
{
    RecoveryRecord record;
    record.fileName = document.displayName().empty() ? L"_" : document.displayName();
    record.savedTime = RecoveryRecord::timeNow();
    record.documentType = document.documentType()->identifier();
    record.source = document.path();
    record.sourceState.identity = DocumentSave::fileOf(document).identity;
    return record;
}

} // namespace

Snapshot Snapshot::of(const Document& document, const std::string& sessionFolder, unsigned steps)
{
    Snapshot snapshot;
    snapshot.document = &document;
    snapshot.folder = sessionFolder + '/' + Strings::narrow(fromUuid(document.identifier()));
    snapshot.name = nameFor(document.displayName());
    snapshot.picture = Native::DocumentContent(document, DocumentSave::fileOf(document)).oldPicture();
    snapshot.record = recordOf(document);
    snapshot.record.steps = steps;
    OwnFiles::makeFolder(snapshot.folder);
    OwnFiles::makeFolder(snapshot.folder + '/' + kOlder);
    return snapshot;
}

void Snapshot::write(Native::FileCalls& calls) const
{
    const bool isFirst = RecoveryStore::fileIn(folder).empty();
    Native::SafeFile file(path(), calls);
    Native::PackageWriter writer(file);
    Native::DocumentContent content(*document, DocumentSave::fileOf(*document));
    content.write(writer, {.picture = picture, .record = wholeRecord().write()},
                  [](double, const std::wstring&) {});
    writer.finish();
    file.commit([&](const std::string& scratch) {
        Native::readBack(scratch, writer, content);
        setOlderAside(calls);
    });
    if (isFirst)
        flushAbove(folder, calls);
}

RecoveryRecord Snapshot::wholeRecord() const
{
    RecoveryRecord whole = record;
    whole.digests = digestsOf(*document);
    // Of a source that isn't the one any more that the document was opened from, the digest says nothing.
    const SourceState now = SourceState::of(Strings::toBytes(record.source));
    if (now.identity == record.sourceState.identity)
        whole.sourceState.digest = now.digest;
    return whole;
}

void Snapshot::setOlderAside(Native::FileCalls& calls) const
{
    const std::string last = RecoveryStore::fileIn(folder);
    if (last.empty())
        return;
    const std::string older = folder + '/' + kOlder, before = RecoveryStore::olderIn(folder);
    const std::string target = older + '/' + fs::path(last).filename().string();
    FolderCalls::rename(last, target, calls);
    // Of another name, when the document was renamed.
    if (!before.empty() && before != target)
        FolderCalls::remove(before, calls);
}

} // namespace Vs::Recovery
