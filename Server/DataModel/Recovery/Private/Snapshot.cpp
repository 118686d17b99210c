#include "Server/DataModel/Recovery/Private/Snapshot.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/Native/DocumentFile.h"
#include "Server/DataModel/Native/DocumentSave.h"
#include "Server/DataModel/Native/ReadBack.h"
#include "Server/DataModel/Native/SafeFile.h"
#include "Server/DataModel/Recovery/Private/RecoveryRecord.h"
#include "Server/DataModel/Recovery/Private/RecoveryStore.h"
#include "Server/Types/Uuid.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

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

std::string recordOf(const Document& document)
{
    RecoveryRecord record;
    record.fileName = document.displayName().empty() ? L"_" : document.displayName();
    record.savedTime = RecoveryRecord::timeNow();
    record.documentType = document.documentType()->identifier();
    record.source = document.path();
    record.sourceIdentity = DocumentSave::fileOf(document).identity;
    return record.write();
}

} // namespace

Snapshot Snapshot::of(const Document& document, const std::string& sessionFolder)
{
    Snapshot snapshot;
    snapshot.document = &document;
    snapshot.folder = sessionFolder + '/' + Strings::narrow(fromUuid(document.identifier()));
    snapshot.name = nameFor(document.displayName());
    snapshot.frame.picture = Native::DocumentContent(document, DocumentSave::fileOf(document)).oldPicture();
    snapshot.frame.record = recordOf(document);
    OwnFiles::makeFolder(snapshot.folder);
    OwnFiles::makeFolder(snapshot.folder + '/' + kOlder);
    return snapshot;
}

void Snapshot::write(Native::FileCalls& calls) const
{
    Native::SafeFile file(path(), calls);
    Native::PackageWriter writer(file);
    Native::DocumentContent content(*document, DocumentSave::fileOf(*document));
    content.write(writer, frame, [](double, const std::wstring&) {});
    writer.finish();
    file.commit([&](const std::string& scratch) {
        Native::readBack(scratch, writer, content);
        setOlderAside(calls);
    });
}

void Snapshot::setOlderAside(Native::FileCalls& calls) const
{
    const std::string last = RecoveryStore::fileIn(folder);
    if (last.empty())
        return;
    const std::string older = folder + '/' + kOlder, before = RecoveryStore::fileIn(older);
    const std::string target = older + '/' + fs::path(last).filename().string();
    while (calls.rename(last.c_str(), target.c_str()) != 0)
        if (errno != EINTR)
            throw std::runtime_error(std::strerror(errno));
    // Of another name, when the document was renamed.
    if (!before.empty() && before != target)
        calls.remove(before.c_str());
}

} // namespace Vs::Recovery
