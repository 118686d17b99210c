#include "Server/DataModel/Native/DocumentSave.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Exchange/ExactData.h"
#include "Server/DataModel/HeldFiles.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/DataModel/Model/MappingGuard.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Model/PlainFile.h"
#include "Server/DataModel/Native/DocumentContent.h"
#include "Server/DataModel/Native/DocumentFile.h"
#include "Server/DataModel/Native/PackageWriter.h"
#include "Server/DataModel/Native/Paths.h"
#include "Server/DataModel/Private/ProgressText.h"
#include "Server/DataModel/ThumbnailSource.h"

#include <boost/filesystem/path.hpp>

#include <stdexcept>

namespace Vs {

namespace {

using Native::Cancelled;
using Native::DocumentContent;
using Native::PackageWriter;

/// A handler asked the user, who doesn't want it saved.
struct Declined
{
};

/// A different date, or a different file with the same content, is not a change.
bool holdsWhatWasOpened(const std::string& target, const DocumentFile& opened)
{
    if (!opened.file || !MappingGuard::keeps(opened.file->bytes().data()))
        return false;
    std::string_view left = opened.file->bytes();
    try {
        PlainFile now(target);
        if (now.size() != left.size())
            return false;
        std::vector<char> piece(size_t(1) << 20);
        while (const size_t got = now.read(piece.data(), piece.size())) {
            if (left.substr(0, got) != std::string_view(piece.data(), got))
                return false;
            left.remove_prefix(got);
        }
    } catch (const std::runtime_error&) {
        return false;
    }
    return left.empty();
}

/// A file that is gone is written anew; one that nobody read is the user's own choice.
bool changedOutside(const std::string& target, const DocumentFile& opened)
{
    const FileIdentity now = FileIdentity::of(target);
    return opened.identity.inode != 0 && now.inode != 0 && now != opened.identity &&
           !holdsWhatWasOpened(target, opened);
}

/// One save, from the questions to the finished file. A failure throws std::runtime_error with a full
/// sentence, or Cancelled.
class Save
{
public:
    Save(Document& document, DocumentFile& file, const std::wstring& path)
        : m_document(document),
          m_file(file),
          m_path(path),
          m_target(targetOf(path)),
          m_content(document, file)
    {
    }

    /// `others` are the documents beside this one that have the path.
    void check(const std::vector<const Document*>& others)
    {
        for (const Asset* asset : m_content.assets())
            if (asset->data().history().isOpen())
                fail(L"a change of \"" + asset->name() + L"\" is under way");
        for (const Document* other : others)
            if (sameFile(*other))
                fail(L"another document of that file is open");
    }

    /// Throws Declined as well. May give the document another path, and then there is nothing to be saved
    /// here.
    void ask(bool firstTime)
    {
        const IDocMgmtHandler::Documents documents{&m_document};
        if (firstTime && IDocMgmtHandler::notifySavingFirstTime(documents) == eDocMgmtStop)
            throw Cancelled();
        if (m_file.migrated && IDocMgmtHandler::notifySavingMigratedFiles(documents) == eDocMgmtStop)
            throw Cancelled();
        const std::wstring ownPath = m_document.path();
        const bool held = m_path == ownPath && HeldFiles::holder(&m_document);
        if (held)
            need(IDocMgmtHandler::notifySavingReadOnlyFiles(documents),
                 L"another program is working on the file. Save it under another name with Save As");
        else if (Native::isWriteProtected(m_target))
            need(IDocMgmtHandler::notifySavingReadOnlyFiles(documents),
                 L"the file is write-protected. Save it under another name with Save As");
        if (m_document.path() == ownPath && m_path == ownPath && changedOutside(m_target, m_file))
            need(IDocMgmtHandler::notifySavingChangedFiles(documents),
                 L"another program has changed the file since it was opened. Save it under another name with "
                 L"Save As");
        m_found = FileIdentity::of(m_target);
    }

    /// Instead of asking: a file that isn't the document's.
    void beCopy()
    {
        if (Native::isWriteProtected(m_target))
            fail(L"the file is write-protected");
        m_isCopy = true;
        m_found = FileIdentity::of(m_target);
    }

    void write()
    {
        ProgressScope progress(ProgressText::saving(m_path));
        try {
            Native::SafeFile file(m_target, Native::FileCalls::current());
            PackageWriter writer(file);
            m_content.write(writer, frame(), [&](double fraction, const std::wstring& step) {
                if (!progress.update(fraction, step))
                    throw Cancelled();
            });
            writer.finish();
            if (!progress.update(1, ProgressText::step("flushing to the disk")))
                throw Cancelled();
            // The check is made again, since writing takes its time.
            if (FileIdentity::of(m_target) != m_found)
                throw std::runtime_error("another program has written the file just now");
            commit(file);
        } catch (const std::runtime_error& error) {
            fail(Strings::widen(error.what()));
        }
    }

    /// The document's parts are those of the new file from now on.
    void takeOver()
    {
        m_file.extras = m_content.manifest().extras;
        try {
            m_file.file = FileMapping::openGuarded(m_target);
        } catch (const std::runtime_error&) {
            return; // The parts of the old file serve as well.
        }
        if (m_file.file->identity() != m_file.identity)
            return;
        std::vector<Exchange::ExactData::Place> own;
        for (size_t i = 0; i < m_content.assets().size(); ++i) {
            const PackageWriter::Entry& part = m_content.parts()[i];
            if (part.size == 0)
                continue;
            m_content.assets()[i]->data().stored(
                {m_file.file, part.place, part.size, m_content.manifest().assets[i].hash, part.crc});
            if (m_content.isOwnWork(i))
                own.push_back({part.place, part.size});
        }
        if (!own.empty())
            Exchange::ExactData::noteOwn(m_file.file, std::move(own));
    }

private:
    static std::string targetOf(const std::wstring& path)
    {
        try {
            return Native::followedPath(Strings::toBytes(path));
        } catch (const std::runtime_error& error) {
            throw std::runtime_error("\"" + Strings::narrow(path) + "\" can't be saved: " + error.what() +
                                     ".");
        }
    }

    [[noreturn]] void fail(const std::wstring& cause) const
    {
        throw std::runtime_error(Strings::narrow(L"\"" + m_path + L"\" can't be saved: " + cause + L"."));
    }

    void need(EDocMgmtOpCode answer, const std::wstring& otherwise) const
    {
        if (answer == eDocMgmtStop)
            throw Declined();
        if (answer != eDocMgmtGoOn)
            fail(otherwise);
    }

    bool sameFile(const Document& other) const
    {
        const FileIdentity theirs = FileIdentity::of(Strings::toBytes(other.path()));
        return theirs.inode == 0 || theirs == FileIdentity::of(m_target);
    }

    DocumentContent::Frame frame() const
    {
        DocumentContent::Frame frame;
        frame.moved = m_path != m_document.path() || m_file.identity.inode == 0;
        frame.picture = ThumbnailSource::png(m_document);
        if (frame.picture.empty())
            frame.picture = m_content.oldPicture();
        return frame;
    }

    void commit(Native::SafeFile& file)
    {
        try {
            file.commit();
        } catch (const std::runtime_error&) {
            // The new file stands there, though the disk may not have heard of its name: the next save must
            // not take it for somebody else's.
            if (file.inPlace() && m_path == m_document.path())
                m_file.identity = FileIdentity::of(m_target);
            throw;
        }
        if (!m_isCopy)
            m_file.identity = FileIdentity::of(m_target);
    }

    Document& m_document;
    DocumentFile& m_file;
    std::wstring m_path;
    std::string m_target;
    FileIdentity m_found;
    bool m_isCopy = false;
    DocumentContent m_content;
};

} // namespace

const DocumentFile& DocumentSave::fileOf(const Document& document)
{
    return *document.m_file;
}

void DocumentSave::recoveredOf(Document& document, const std::wstring& path, const FileIdentity& identity)
{
    document.m_file->recoveredPath = path;
    document.m_file->recoveredIdentity = identity;
}

bool DocumentSave::isChangedOutside(const Document& document)
{
    try {
        return document.isOnDisk() &&
               changedOutside(Native::followedPath(Strings::toBytes(document.path())), *document.m_file);
    } catch (const std::runtime_error&) {
        return false; // A path that leads nowhere.
    }
}

std::vector<const Document*> DocumentSave::othersOf(const Document& document, const std::wstring& path)
{
    std::vector<const Document*> others;
    const std::string wanted = Native::comparablePath(path).string();
    for (const auto& other : DocumentMgr::get()->m_documents)
        if (other.get() != &document && other->m_comparablePath == wanted)
            others.push_back(other.get());
    return others;
}

bool DocumentSave::saveElsewhere(Document& document, const Place& before, Status& status)
{
    if (save(document, document.m_path, status))
        return true;
    document.takePath(before.path);
    document.displayName(before.name);
    document.m_file->identity = before.identity;
    return false;
}

bool DocumentSave::saveCopy(Document& document, const std::wstring& path, Status& status)
{
    assertMainThread();
    try {
        Save save(document, *document.m_file, path);
        std::vector<const Document*> others = othersOf(document, path);
        if (document.m_comparablePath == Native::comparablePath(path).string())
            others.push_back(&document);
        save.check(others);
        save.beCopy();
        save.write();
        return true;
    } catch (const Cancelled&) {
        status.addError(L"Saving \"" + path + L"\" was cancelled; nothing was written.");
    } catch (const std::exception& error) {
        status.addError(Strings::widen(error.what()));
    }
    return false;
}

bool DocumentSave::save(Document& document, const std::wstring& path, Status& status)
{
    assertMainThread();
    require(!path.empty(), "a document that is saved has a path");
    const Place before{document.m_path, document.m_displayName, document.m_file->identity};
    try {
        Save save(document, *document.m_file, path);
        save.check(othersOf(document, path));
        save.ask(document.m_savedVersion == 0);
        if (document.m_path != before.path)
            return saveElsewhere(document, before, status);
        save.write();
        save.takeOver();
    } catch (const Declined&) {
        status.addError(L"\"" + path + L"\" was not saved.");
        status.reported(true);
        return false;
    } catch (const Cancelled&) {
        status.addError(L"Saving \"" + path + L"\" was cancelled; nothing was written.");
        return false;
    } catch (const std::exception& error) {
        status.addError(Strings::widen(error.what()));
        return false;
    }
    if (path != document.m_path) {
        document.takePath(path);
        document.m_displayName = boost::filesystem::path(path).stem().wstring();
    }
    document.m_savedVersion = SoftwareVersion::currentVersionNumber();
    document.m_file->migrated = false;
    document.m_file->editingAllowed = false;
    for (const auto* list : {&document.m_assets, &document.m_hiddenAssets})
        for (const auto& asset : *list)
            asset->markClean();
    return true;
}

} // namespace Vs
