// Who is working on a document's file, and what is asked before a document closes.

#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentLocks.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/HeldFiles.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Session/SessionMgr.h"

#include <boost/filesystem/operations.hpp>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

using namespace Vu;
namespace fs = boost::filesystem;
using Vs::DocumentLocks;
using Vs::DocumentMgr;
using Vs::HeldFiles;

namespace {

/// Another program that has a file open, on this machine or another.
class OtherProgram
{
public:
    OtherProgram(const fs::path& note, const std::string& machine)
    {
        int ready[2];
        EXPECT_EQ(::pipe(ready), 0);
        m_process = ::fork();
        if (m_process == 0) {
            const int file = ::open(note.c_str(), O_RDWR | O_CREAT, 0644);
            const std::string text = "{\"name\": \"Ada\", \"machine\": \"" + machine +
                                     "\", \"process\": " + std::to_string(::getpid()) +
                                     ", \"since\": \"2026-03-01T08:00:00Z\"}";
            const bool noted = ::flock(file, LOCK_EX) == 0 &&
                               ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
            const char byte = noted ? 'y' : 'n';
            if (::write(ready[1], &byte, 1) == 1)
                ::pause();
            _exit(0);
        }
        char byte = 0;
        EXPECT_EQ(::read(ready[0], &byte, 1), 1);
        EXPECT_EQ(byte, 'y');
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~OtherProgram() { die(); }
    void die()
    {
        if (m_process <= 0)
            return;
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        m_process = -1;
    }

private:
    pid_t m_process;
};

std::string ownMachine()
{
    char name[256] = {};
    ::gethostname(name, sizeof name - 1);
    return name;
}

class DocumentFilesTest : public UiTest
{
protected:
    DocumentFilesTest()
    {
        Vs::Document* made = newAsset()->document();
        Vs::Status status;
        EXPECT_TRUE(made->saveAs(path(), status)) << status.matchingError("");
        DocumentMgr::get()->close(made);
    }
    ~DocumentFilesTest() override
    {
        Application::testing(true);
        DocumentLocks::get()->onChange(nullptr);
        DocumentLocks::get()->end();
    }
    std::wstring path(const wchar_t* name = L"part.tdsn") const { return (folder.path() / name).wstring(); }
    fs::path note() const { return folder.path() / ".~part.tdsn.lock"; }
    Vs::Document* open() const
    {
        Vs::Status status;
        Vs::Document* document = DocumentMgr::get()->open(path(), status);
        EXPECT_TRUE(document) << status.matchingError("");
        return document;
    }
    static void change(Vs::Document* document)
    {
        Vs::Transaction transaction(document->activeAsset(), L"Rename");
        document->activeAsset()->name(L"Another name");
        transaction.commit();
        document->activeAsset()->markDirty();
    }
};

/// The answer to the question about documents about to close.
class Asking : public Vs::IDocMgmtHandler
{
public:
    Vs::EDocMgmtOpCode onClosingDirtyDocuments(const Documents& documents) override
    {
        asked += static_cast<int>(documents.size());
        return answer;
    }
    int asked = 0;
    Vs::EDocMgmtOpCode answer = Vs::eDocMgmtStop;
};

} // namespace

TEST_F(DocumentFilesTest, AFileIsNotedAsLongAsItsDocumentIsOpen)
{
    EXPECT_FALSE(fs::exists(note()));
    Vs::Document* document = open();
    EXPECT_FALSE(fs::exists(note())) << "nobody has begun to note anything";
    DocumentLocks::get()->start();
    EXPECT_NE(TestSupport::contentOf(note()).find("\"process\": " + std::to_string(::getpid())),
              std::string::npos);
    EXPECT_FALSE(HeldFiles::holder(document));
    Vs::Status status;
    change(document);
    ASSERT_TRUE(document->save(status)) << status.matchingError("");
    EXPECT_TRUE(fs::exists(note()));
    ASSERT_TRUE(document->saveAs(path(L"other.tdsn"), status));
    EXPECT_FALSE(fs::exists(note()));
    EXPECT_TRUE(fs::exists(folder.path() / ".~other.tdsn.lock"));
    DocumentMgr::get()->close(document);
    EXPECT_FALSE(fs::exists(folder.path() / ".~other.tdsn.lock"));
}

TEST_F(DocumentFilesTest, WhatAnotherProgramHasIsReadOnlyUntilThatLetsItGo)
{
    DocumentLocks::get()->start();
    int changes = 0;
    DocumentLocks::get()->onChange([&](Vs::Document*) { ++changes; });
    OtherProgram other(note(), ownMachine());
    Vs::Document* document = open();
    ASSERT_TRUE(HeldFiles::holder(document));
    EXPECT_EQ(HeldFiles::holder(document)->name, L"Ada");
    EXPECT_GT(HeldFiles::holder(document)->since, 0);
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(document->isReadOnly());
    change(document);
    Vs::Status status;
    EXPECT_FALSE(document->save(status));
    EXPECT_TRUE(document->isDirty(false));
    EXPECT_FALSE(DocumentLocks::get()->takeAgain(document));

    // If the user is asked, overwriting is possible.
    std::wstring question;
    MessageBox::responder([&](const MessageBox& box) {
        question = box.text();
        return 0;
    });
    Vs::Status asked;
    EXPECT_TRUE(document->save(asked)) << asked.matchingError("");
    EXPECT_NE(question.find(L"Ada"), std::wstring::npos);

    other.die();
    EXPECT_TRUE(DocumentLocks::get()->takeAgain(document)) << "a dead one has nothing";
    EXPECT_FALSE(document->isReadOnly());
    EXPECT_EQ(changes, 2);
}

TEST_F(DocumentFilesTest, NotesOfTheDeadCountForNothingAndThoseOfOtherMachinesDo)
{
    DocumentLocks::get()->start();
    OtherProgram(note(), ownMachine()).die();
    ASSERT_TRUE(fs::exists(note()));
    Vs::Document* document = open();
    EXPECT_FALSE(HeldFiles::holder(document));
    DocumentMgr::get()->close(document);
    EXPECT_FALSE(fs::exists(note()));

    OtherProgram(note(), "elsewhere").die();
    document = open();
    ASSERT_TRUE(HeldFiles::holder(document)) << "nobody here knows whether it lives";
    EXPECT_EQ(HeldFiles::holder(document)->machine, L"elsewhere");
    EXPECT_FALSE(DocumentLocks::get()->takeAgain(document));
    EXPECT_TRUE(DocumentLocks::get()->takeAgain(document, true));
    DocumentMgr::get()->close(document);

    for (const char* content : {"", "{", "[1, 2]", "{\"machine\": 7}"}) {
        TestSupport::overwrite(note(), content);
        document = open();
        EXPECT_FALSE(HeldFiles::holder(document)) << content;
        DocumentMgr::get()->close(document);
    }
    // Something that isn't a file isn't touched, and blocks nobody.
    fs::create_directory(note());
    document = open();
    EXPECT_FALSE(HeldFiles::holder(document));
    DocumentMgr::get()->close(document);
    EXPECT_TRUE(fs::is_directory(note()));
}

TEST_F(DocumentFilesTest, AChangeByAnotherProgramIsSeenAndATouchIsNone)
{
    Vs::Document* document = open();
    EXPECT_FALSE(DocumentLocks::isChangedOutside(*document));
    const std::string content = TestSupport::contentOf(fs::path(path()));
    fs::remove(path());
    EXPECT_FALSE(DocumentLocks::isChangedOutside(*document)) << "it is gone, which is another matter";
    TestSupport::overwrite(path(), content);
    EXPECT_FALSE(DocumentLocks::isChangedOutside(*document)) << "the same content";
    TestSupport::overwrite(path(), content + "more");
    EXPECT_TRUE(DocumentLocks::isChangedOutside(*document));
}

TEST_F(DocumentFilesTest, APersonIsAskedBeforeTheShownDocumentGoesAndALineIsNot)
{
    Asking asking;
    MessageBox::responder([](const MessageBox&) { return 0; });
    int runs = 0;
    FunctionCommandDef replacing(L"ReplacingTestCommand", [&](CommandContext&) { ++runs; });
    FunctionCommandDef other(L"OtherTestCommand", [&](CommandContext&) { ++runs; });
    ReplacingDocument::byCommand(L"ReplacingTestCommand");
    Vs::Document* document = open();
    SessionMgr::get()->currentAssetSession(SessionMgr::get()->assetSession(document->activeAsset()));
    SessionMgr::get()->activate();
    const auto press = [&](CommandDefinition& definition) {
        const int before = runs;
        definition.runByHand(ECommandAccessPoint::Toolbar);
        for (int i = 0; i < 3; ++i)
            Application::get()->flushDeferredTasks();
        return runs > before;
    };
    Application::testing(false);
    EXPECT_TRUE(press(replacing));
    EXPECT_EQ(asking.asked, 0) << "nothing was changed";
    change(document);
    EXPECT_FALSE(press(replacing));
    EXPECT_EQ(asking.asked, 1);
    EXPECT_TRUE(press(other)) << "it replaces nothing";
    asking.answer = Vs::eDocMgmtGoOn;
    EXPECT_TRUE(press(replacing));
    EXPECT_EQ(asking.asked, 2);

    // A line, a test, and opening the shown document.
    std::ignore = replacing.executeCommand(CommandContext::activeContext());
    EXPECT_TRUE(ReplacingDocument::agreed(path()));
    Application::testing(true);
    EXPECT_TRUE(press(replacing));
    EXPECT_EQ(asking.asked, 2);
}
