// What prevents a save, and what a save must not lose.

#include "Server/Base/Progress.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <fcntl.h>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Vs;
namespace fs = boost::filesystem;

class SaveTest : public NativeTest
{
protected:
    /// A document that was saved and changed since.
    Document* changedDocument(const std::string& name)
    {
        Document* document = madeAsset()->document();
        EXPECT_TRUE(saveAs(document, scratch(name))) << message();
        ModelBuilder(document->activeAsset()).box(1, 2, 3, {}, status);
        return document;
    }
    void expectRefused(Document* document, const std::string& cause)
    {
        const std::string before = contentOf(document->path()), digest = digestOf(*document->activeAsset());
        const size_t files = filesInFolder();
        EXPECT_FALSE(save(document));
        EXPECT_TRUE(oneMessage(document->path(), cause));
        EXPECT_TRUE(contentOf(document->path()) == before) << "the old file was touched";
        EXPECT_EQ(filesInFolder(), files);
        EXPECT_TRUE(document->isDirty(false));
        EXPECT_EQ(digestOf(*document->activeAsset()), digest);
    }
};

TEST_F(SaveTest, ALinkStaysALinkAndTheRightsStay)
{
    Document* document = changedDocument("real.tdsn");
    fs::create_directory(folder.path() / "sub");
    fs::create_symlink("../real.tdsn", folder.path() / "sub" / "link.tdsn");
    chmod(Strings::narrow(document->path()).c_str(), 0640);
    DocumentMgr::get()->close(document);
    document = open((folder.path() / "sub" / "link.tdsn").wstring());
    ASSERT_NE(document, nullptr) << message();
    ModelBuilder(document->activeAsset()).box(1, 2, 3, {}, status);
    ASSERT_TRUE(save(document)) << message();
    EXPECT_TRUE(fs::is_symlink(folder.path() / "sub" / "link.tdsn"));
    struct stat info;
    ASSERT_EQ(stat((folder.path() / "real.tdsn").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    DocumentMgr::get()->close(document);
    EXPECT_EQ(componentsOf(*open(scratch("real.tdsn"))->activeAsset()).size(), 3u);
    // A link to nothing is filled, and a circular one reported.
    fs::create_symlink("later.tdsn", folder.path() / "early.tdsn");
    EXPECT_TRUE(saveAs(DocumentMgr::get()->document(0u), scratch("early.tdsn"))) << message();
    EXPECT_TRUE(fs::is_regular_file(folder.path() / "later.tdsn"));
    fs::create_symlink("circle.tdsn", folder.path() / "circle.tdsn");
    EXPECT_FALSE(saveAs(DocumentMgr::get()->document(0u), scratch("circle.tdsn")));
    EXPECT_TRUE(oneMessage(L"circle.tdsn", "symbolic links"));
}

TEST_F(SaveTest, LabelsAndAccessListsStay)
{
    Document* document = changedDocument("labelled.tdsn");
    const std::string path = Strings::narrow(document->path());
    // The owner, one more user, the group, the mask, the others: in the format of the system's interface.
    struct Entry
    {
        uint16_t tag, rights;
        uint32_t who;
    };
    constexpr uint32_t kNobody = 0xffffffff, kGuest = 12345;
    const Entry list[] = {
        {1, 6, kNobody}, {2, 4, kGuest}, {4, 0, kNobody}, {16, 4, kNobody}, {32, 0, kNobody}};
    const uint32_t version = 2;
    std::string access(reinterpret_cast<const char*>(&version), sizeof version);
    access.append(reinterpret_cast<const char*>(list), sizeof list);

    std::vector<std::pair<std::string, std::string>> kept;
    for (const auto& [name, value] :
         {std::pair<std::string, std::string>("user.note", std::string("a\0b", 3)),
          {"user.empty", ""},
          {"system.posix_acl_access", access}})
        if (setxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) == 0)
            kept.emplace_back(name, value);
    if (kept.empty())
        GTEST_SKIP() << "the file system of " << path << " has no attributes";
    ASSERT_TRUE(save(document)) << message();
    for (const auto& [name, value] : kept) {
        char found[256];
        const ssize_t size = getxattr(path.c_str(), name.c_str(), found, sizeof found);
        ASSERT_GE(size, 0) << name;
        EXPECT_EQ(std::string(found, static_cast<size_t>(size)), value) << name;
    }
    // They belong to the replaced file, not the document.
    ASSERT_TRUE(saveAs(document, scratch("plain.tdsn"))) << message();
    EXPECT_LT(getxattr(Strings::narrow(scratch("plain.tdsn")).c_str(), kept[0].first.c_str(), nullptr, 0), 0);
}

TEST_F(SaveTest, AWriteProtectedFileIsLeftAloneUnlessSomebodyAgrees)
{
    Document* document = changedDocument("protected.tdsn");
    chmod(Strings::narrow(document->path()).c_str(), 0444);
    EXPECT_TRUE(document->isReadOnly());
    Handler handler;
    expectRefused(document, "Save As");
    EXPECT_EQ(handler.asked, (std::vector<std::string>{"read-only"}));
    handler.answers["read-only"] = eDocMgmtGoOn;
    EXPECT_TRUE(save(document)) << message();
    EXPECT_TRUE(document->isReadOnly()) << "the protection stays";
    EXPECT_FALSE(document->isDirty(false));
}

TEST_F(SaveTest, AReadOnlyDocumentIsChangedOnlyIfNobodyMinds)
{
    const std::wstring path = savedFile("locked.tdsn");
    chmod(Strings::narrow(path).c_str(), 0444);
    Document* document = open(path);
    ASSERT_NE(document, nullptr) << message();
    Handler handler;
    handler.answers["editing"] = eDocMgmtStop;
    EXPECT_EQ(ModelBuilder(document->activeAsset()).box(1, 1, 1, {}, status), nullptr);
    EXPECT_TRUE(status.matchingError("read-only"));
    EXPECT_FALSE(document->isDirty(false));
    handler.answers.clear();
    EXPECT_NE(ModelBuilder(document->activeAsset()).box(1, 1, 1, {}, status), nullptr);
    EXPECT_NE(ModelBuilder(document->activeAsset()).box(2, 2, 2, {}, status), nullptr);
    EXPECT_EQ(handler.asked, (std::vector<std::string>{"editing", "editing"})) << "asked until it is agreed";
}

TEST_F(SaveTest, AFileThatAnotherProgramChangedIsNotOverwrittenSilently)
{
    Document* document = changedDocument("shared.tdsn");
    Handler handler;
    // Another date, or another file with the same content, isn't a change.
    fs::last_write_time(document->path(), fs::last_write_time(document->path()) - 100);
    EXPECT_TRUE(save(document)) << message();
    ModelBuilder(document->activeAsset()).box(3, 2, 1, {}, status);
    fs::copy_file(document->path(), scratch("theirs"));
    fs::rename(scratch("theirs"), document->path());
    EXPECT_TRUE(save(document)) << message();
    EXPECT_TRUE(handler.asked.empty());

    // Another program saves like this one, or writes into the file in place.
    ModelBuilder(document->activeAsset()).box(1, 1, 1, {}, status);
    const std::string mine = digestOf(*document->activeAsset());
    std::string content = contentOf(document->path());
    content[content.size() / 2] = static_cast<char>(content[content.size() / 2] ^ 1);
    write("theirs", content);
    fs::rename(scratch("theirs"), document->path());
    expectRefused(document, "another program has changed");
    overwrite(document->path(), "short");
    expectRefused(document, "another program has changed");
    EXPECT_TRUE(saveAs(document, scratch("mine.tdsn"))) << message();
    EXPECT_EQ(digestOf(*reopen(document)->activeAsset()), mine);

    document = changedDocument("agreed.tdsn");
    const std::string agreed = digestOf(*document->activeAsset());
    overwrite(document->path(), "short");
    handler.answers["changed"] = eDocMgmtStop;
    expectRefused(document, "was not saved");
    EXPECT_TRUE(status.reported()) << "who stopped it knows";
    handler.answers["changed"] = eDocMgmtGoOn;
    EXPECT_TRUE(save(document)) << message();
    EXPECT_TRUE(save(document)) << message();
    EXPECT_EQ(digestOf(*reopen(document)->activeAsset()), agreed);
}

TEST_F(SaveTest, AHandlerMaySendTheDocumentElsewhereInsteadOfOverwritingAFile)
{
    struct Elsewhere : IDocMgmtHandler
    {
        std::wstring path;
        EDocMgmtOpCode onSavingReadOnlyFiles(const Documents& documents) override { return send(documents); }
        EDocMgmtOpCode onSavingChangedFiles(const Documents& documents) override { return send(documents); }
        EDocMgmtOpCode send(const Documents& documents) const
        {
            (*documents.begin())->path(path);
            return eDocMgmtGoOn;
        }
    } handler;
    for (const bool isProtected : {true, false}) {
        Document* document = changedDocument("theirs.tdsn");
        const std::wstring old = document->path();
        const std::string digest = digestOf(*document->activeAsset());
        if (isProtected)
            chmod(Strings::narrow(old).c_str(), 0444);
        else
            overwrite(old, "theirs");
        const std::string before = contentOf(old);
        handler.path = scratch("no folder/mine.tdsn");
        EXPECT_FALSE(save(document));
        EXPECT_TRUE(oneMessage(handler.path, "doesn't exist"));
        EXPECT_EQ(document->path(), old);
        EXPECT_EQ(document->displayName(), L"theirs");
        handler.path = scratch("mine.tdsn");
        EXPECT_TRUE(save(document)) << message();
        EXPECT_EQ(document->path(), handler.path);
        EXPECT_EQ(document->displayName(), L"mine");
        EXPECT_FALSE(document->isDirty(false));
        EXPECT_TRUE(contentOf(old) == before);
        EXPECT_EQ(digestOf(*reopen(document)->activeAsset()), digest);
        DocumentMgr::get()->close(DocumentMgr::get()->document(0u));
        fs::remove(old);
    }
}

TEST_F(SaveTest, WhatIsOpenStaysWholeHoweverItsFileGoes)
{
    const std::wstring path = savedFile("open.tdsn");
    const std::string digest = [&] {
        Document* document = open(path);
        const std::string found = digestOf(*document->activeAsset());
        DocumentMgr::get()->close(document);
        return found;
    }();
    const std::function<void()> ends[] = {
        [&] { fs::remove(path); },
        [&] { overwrite(path, ""); },
        [&] { overwrite(path, std::string(1 << 20, 'x')); },
        [&] { ASSERT_EQ(truncate(Strings::narrow(path).c_str(), 5000), 0); },
    };
    const std::string whole = contentOf(path);
    for (const auto& end : ends) {
        // Opened and nothing of it read yet: neither a mesh nor a shape.
        Document* document = open(path);
        ASSERT_NE(document, nullptr) << message();
        end();
        EXPECT_TRUE(saveAs(document, scratch("rescued.tdsn"))) << message();
        EXPECT_EQ(digestOf(*document->activeAsset()), digest);
        EXPECT_EQ(digestOf(*reopen(document)->activeAsset()), digest);
        DocumentMgr::get()->close(DocumentMgr::get()->document(0u));
        overwrite(path, whole);
    }
}

TEST_F(SaveTest, WhatIsOpenStaysWholeAlsoWhereTheSystemCannotAskBefore)
{
    // It can't if somebody has the file open for writing already.
    const std::wstring path = savedFile("held.tdsn");
    const std::string content = contentOf(path);
    overwrite(scratch("copy.tdsn"), content);
    fs::fstream holder(path, std::ios::in | std::ios::out | std::ios::binary);
    Document *held = open(path), *copy = open(scratch("copy.tdsn"));
    ASSERT_TRUE(held && copy) << message();
    holder << std::string(content.size(), 'x') << std::flush;
    EXPECT_EQ(digestOf(*held->activeAsset()), digestOf(*copy->activeAsset()));
    EXPECT_TRUE(saveAs(held, scratch("rescued.tdsn"))) << message();
}

TEST_F(SaveTest, AFileThatIsGoneIsWrittenAnewButNotItsFolder)
{
    fs::create_directory(folder.path() / "sub");
    Document* document = madeAsset()->document();
    const std::wstring path = (folder.path() / "sub" / "gone.tdsn").wstring();
    ASSERT_TRUE(saveAs(document, path)) << message();
    fs::remove(path);
    EXPECT_TRUE(save(document)) << message();
    fs::remove_all(folder.path() / "sub");
    document->activeAsset()->markDirty();
    EXPECT_FALSE(save(document));
    EXPECT_TRUE(oneMessage(path, "sub doesn't exist"));
    EXPECT_TRUE(document->isDirty(false));
}

TEST_F(SaveTest, APlaceThatIsNoFileIsRefused)
{
    Document* document = madeAsset()->document();
    fs::create_directory(folder.path() / "folder.tdsn");
    EXPECT_FALSE(saveAs(document, scratch("folder.tdsn")));
    EXPECT_TRUE(oneMessage(L"folder.tdsn", "folder of that name"));
    ASSERT_EQ(mkfifo((folder.path() / "pipe.tdsn").c_str(), 0600), 0);
    EXPECT_FALSE(saveAs(document, scratch("pipe.tdsn")));
    EXPECT_TRUE(oneMessage(L"pipe.tdsn", "not an ordinary file"));
    EXPECT_EQ(open(scratch("pipe.tdsn")), nullptr) << "and nobody waits for one to be filled";
    EXPECT_EQ(open(scratch("folder.tdsn")), nullptr);
    EXPECT_FALSE(saveAs(document, L"/proc/quillet.tdsn"));
    EXPECT_FALSE(saveAs(document, L""));
    EXPECT_TRUE(document->path().empty());
}

TEST_F(SaveTest, TwoSavesOfOneFileDoNotMix)
{
    Document* document = changedDocument("busy.tdsn");
    // What a save writes to: found out by making one fail while it exists.
    std::string scratchFile;
    Handler handler;
    struct Sink : ProgressSink
    {
        std::function<void()> during;
        void begin(const std::wstring&) override {}
        bool update(double, const std::wstring&) override { return during(), true; }
        void end() override {}
    } sink;
    sink.during = [&] {
        for (const auto& entry : fs::directory_iterator(folder.path()))
            if (entry.path().extension() == ".part")
                scratchFile = entry.path().string();
    };
    Progress::sink(&sink);
    EXPECT_TRUE(save(document)) << message();
    Progress::sink(nullptr);
    ASSERT_FALSE(scratchFile.empty());

    // Another program is saving.
    document->activeAsset()->markDirty();
    const int other = ::open(scratchFile.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    expectRefused(document, "being saved by another program");
    // It died, and left its unfinished file behind.
    close(other);
    EXPECT_TRUE(save(document)) << message();
    EXPECT_FALSE(fs::exists(scratchFile));
}

TEST_F(SaveTest, ACancelledSaveOrOpeningLeavesEverythingAsItWas)
{
    struct Sink : ProgressSink
    {
        int left = 0;
        void begin(const std::wstring&) override {}
        bool update(double, const std::wstring&) override { return left-- > 0; }
        void end() override {}
    } sink;
    Document* document = changedDocument("cancel.tdsn");
    Progress::sink(&sink);
    int cancelled = 0;
    for (int updates = 0;; ++updates, ++cancelled) {
        sink.left = updates;
        if (document->save(status))
            break;
        sink.left = updates;
        expectRefused(document, "cancelled");
    }
    EXPECT_GT(cancelled, 2);
    DocumentMgr::get()->close(document);
    sink.left = 0;
    EXPECT_EQ(open(scratch("cancel.tdsn")), nullptr);
    Progress::sink(nullptr);
    EXPECT_TRUE(oneMessage(L"cancel.tdsn", "cancelled"));
    EXPECT_EQ(DocumentMgr::get()->documents(), 0u);
}

TEST_F(SaveTest, WhatALongWorkShowsIsInTheUsersLanguage)
{
    struct Sink : ProgressSink
    {
        std::set<std::wstring> shown;
        void begin(const std::wstring& title) override { shown.insert(title); }
        bool update(double, const std::wstring& step) override { return shown.insert(step), true; }
        void end() override {}
    } sink;
    StringTable::language("de");
    Progress::sink(&sink);
    const std::wstring path = savedFile("Maße.tdsn");
    const Document* document = open(path);
    Progress::sink(nullptr);
    StringTable::language("en");
    ASSERT_NE(document, nullptr) << message();
    for (const wchar_t* text :
         {L"Maße.tdsn wird gespeichert", L"auf die Platte schreiben", L"Maße.tdsn wird geöffnet"})
        EXPECT_TRUE(sink.shown.contains(text)) << Strings::narrow(text);
}

TEST_F(SaveTest, TheFileOfAnotherOpenDocumentIsNotOverwritten)
{
    // Whichever of the two is older.
    Document* early = madeAsset()->document();
    Document* owner = madeAsset()->document();
    Document* late = madeAsset()->document();
    ASSERT_TRUE(saveAs(owner, scratch("owned.tdsn"))) << message();
    fs::create_symlink("owned.tdsn", folder.path() / "link.tdsn");
    const std::string before = contentOf(owner->path());
    for (Document* document : {early, late})
        for (const char* name : {"owned.tdsn", "link.tdsn"}) {
            EXPECT_FALSE(saveAs(document, scratch(name)));
            EXPECT_TRUE(oneMessage(scratch(name), "another document of that file is open"));
            document->path(scratch(name));
            EXPECT_FALSE(save(document));
            document->clearPath();
        }
    EXPECT_TRUE(contentOf(owner->path()) == before);
}

TEST_F(SaveTest, HandlersAreAskedWhereTheirNamesSay)
{
    Handler handler;
    Document* document = madeAsset()->document();
    handler.answers["first"] = eDocMgmtStop;
    EXPECT_FALSE(saveAs(document, scratch("first.tdsn")));
    EXPECT_FALSE(fs::exists(scratch("first.tdsn")));
    EXPECT_TRUE(document->path().empty());
    handler.answers.clear();
    EXPECT_TRUE(saveAs(document, scratch("first.tdsn"))) << message();
    EXPECT_TRUE(save(document)) << message();
    EXPECT_TRUE(saveAs(document, scratch("second.tdsn"))) << message();
    EXPECT_EQ(handler.asked, (std::vector<std::string>{"first", "first"}));
}

TEST_F(SaveTest, NothingIsSavedInTheMiddleOfAChange)
{
    Document* document = changedDocument("middle.tdsn");
    const Transaction transaction(document->activeAsset(), L"Half");
    expectRefused(document, "under way");
}
