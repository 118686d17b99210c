// What the user is told about the files of open documents: that another program has changed one, or somebody
// else has it open; and what the buttons do.

#include "UI/Base/Session/DocumentWatch.h"

#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/HeldFiles.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/DamageNotice.h"

#include <QTest>

#include <boost/algorithm/string.hpp>
#include <boost/filesystem/operations.hpp>

using namespace Vu;
using Vs::Notification;
using Vs::NotificationCenter;

namespace {

namespace fs = boost::filesystem;
using TestSupport::contentOf;
using TestSupport::overwrite;

constexpr int kGoOn = 0;
constexpr int kCancel = 1;

class DocumentWatchTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        Application::get()->needGui(); // The system's messages arrive through its event loop.
        emptyScratch(L"watched");
    }
    void TearDown() override
    {
        for (Notification* notification : NotificationCenter::get()->notifications())
            NotificationCenter::get()->remove(notification);
        WithProgram::TearDown();
    }
    static std::wstring file(const std::wstring& name) { return scratch(L"watched/" + name); }
    /// A file with that many boxes; no document is open then.
    std::wstring made(const std::wstring& name, int boxes)
    {
        answer(L"Design.New");
        for (int i = 0; i < boxes; ++i)
            answer(L"Design.Box 10 20 30");
        const bool isNative = name.ends_with(L".vlra");
        answer((isNative ? L"Document.SaveAs " : L"Asset.Export ") + file(name));
        constexpr int kDontSave = 1;
        answerBoxes(kDontSave);
        answer(L"Document.CloseAll");
        return file(name);
    }
    /// The only one from that sender; null if there is none.
    static Notification* about(const wchar_t* sender)
    {
        std::vector<Notification*> found;
        NotificationCenter::get()->notificationsByClientID(sender, found);
        EXPECT_LE(found.size(), 1u);
        return found.empty() ? nullptr : found.front();
    }
    static Notification* changed() { return about(L"DocumentChanged"); }
    static Notification* held() { return about(L"DocumentHeld"); }
    static bool isTold()
    {
        return UiTests::becomes([] { return changed() != nullptr; });
    }
    static void press(Notification* notification, size_t button)
    {
        NotificationCenter::get()->act(notification, button);
        Application::get()->flushDeferredTasks();
    }
    static bool hasPart(const wchar_t* name)
    {
        return run(std::wstring(L"Selection.Select ") + name).first == 0;
    }
    /// Except for the clip planes, which drawing changes.
    static std::wstring camera()
    {
        std::wstring text = answer(L"Camera.Dump");
        return text.erase(text.find(L" Near"), text.find(L" Width") - text.find(L" Near"));
    }
};

} // namespace

TEST_F(DocumentWatchTest, WhatADamagedFileLacksIsToldWhileItIsOpen)
{
    const DamageNotice notice;
    const auto told = [] { return about(L"FileDamaged"); };
    const std::wstring part = made(L"part.step", 1);
    answer(L"Document.Open " + part);
    EXPECT_EQ(told(), nullptr);
    answer(L"Document.CloseAll");
    std::string text = contentOf(part);
    boost::replace_first(text, "ADVANCED_FACE", "ADVANCED_FOCE");
    overwrite(part, text);
    struct Alerts : AlertEventSite
    {
        int count = 0;
        void alertAdded(AlertController*, const Alert&) override { ++count; }
    } alerts;
    Vs::Subscriptions subscriptions;
    subscriptions.add(AlertEventSource::get(), &alerts);
    constexpr bool kTyped = true;
    Vs::TextCommandMgr::get()->executeCommandWithoutOutput(L"Document.Open " + part, kTyped);
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(alerts.count, 0) << "which would be a second notification";
    ASSERT_NE(told(), nullptr);
    EXPECT_NE(told()->title().find(L"part.step"), std::wstring::npos);
    EXPECT_NE(told()->text().find(L"lacks 1 of 6 faces of \"Box1\""), std::wstring::npos) << told()->text();
    // A watch started later reports on open documents, and nothing twice.
    const DamageNotice later;
    EXPECT_NE(told(), nullptr);
    answer(L"Document.CloseAll");
    EXPECT_EQ(told(), nullptr);
}

TEST_F(DocumentWatchTest, AForeignFileThatChangesIsReadAgainWithViewAndSelectionKept)
{
    const DocumentWatch watch;
    const std::wstring part = made(L"part.step", 1), other = made(L"other.step", 2);
    answer(L"Document.Open " + part);
    answer(L"Camera.Set 100,-200,300 1,2,3 0,0.6,0.8 0.1 54321 33 44 1");
    const std::wstring view = camera();
    ASSERT_TRUE(hasPart(L"Box1"));
    const std::wstring selected = answer(L"Selection.List");
    // As careful programs save: by replacing it with another file.
    fs::rename(other, part);
    ASSERT_TRUE(isTold());
    EXPECT_NE(changed()->title().find(L"part.step"), std::wstring::npos);
    ASSERT_EQ(changed()->actions().size(), 1u);
    press(changed(), 0);
    EXPECT_EQ(documents(), 1u);
    EXPECT_EQ(activeDocument()->importedFrom(), part);
    EXPECT_EQ(answer(L"Selection.List"), selected);
    EXPECT_EQ(camera(), view);
    EXPECT_TRUE(hasPart(L"Box2"));
    EXPECT_FALSE(changed());

    // The new one is watched as well, and so is one written in place.
    overwrite(part, contentOf(made(L"third.step", 3)));
    answer(L"Document.Open " + part);
    QTest::qWait(0);
    EXPECT_FALSE(changed());
    overwrite(part, contentOf(file(L"third.step")) + "\n\n");
    EXPECT_TRUE(isTold());
    answer(L"Document.Close");
    EXPECT_FALSE(changed()) << "of a document that is gone nothing is told any more";
}

TEST_F(DocumentWatchTest, ADocumentWithChangesOfBothSidesIsReadAgainOnlyIfTheUserSaysSo)
{
    const DocumentWatch watch;
    const std::wstring part = made(L"part.vlra", 1), other = made(L"other.vlra", 2);
    answer(L"Document.Open " + part);
    answer(L"Design.Sphere 5");
    const Vs::Document* document = activeDocument();
    ASSERT_TRUE(document->isDirty(false));
    const std::string before = contentOf(fs::path(part));
    overwrite(part, before);
    constexpr int kLongerThanItWaits = 1000;
    QTest::qWait(kLongerThanItWaits);
    EXPECT_FALSE(changed()) << "it was written, but holds what it did";
    overwrite(part, contentOf(fs::path(other)));
    ASSERT_TRUE(isTold());
    EXPECT_NE(changed()->text(), L"");

    answerBoxes(kCancel);
    press(changed(), 0);
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(activeDocument(), document);
    EXPECT_FALSE(hasPart(L"Box2"));
    ASSERT_TRUE(changed()) << "it can still be done";
    answerBoxes(kGoOn);
    press(changed(), 0);
    EXPECT_TRUE(hasPart(L"Box2"));
    EXPECT_FALSE(activeDocument()->isDirty(false));
    EXPECT_FALSE(changed());
}

TEST_F(DocumentWatchTest, WhatIsNotedOnAMachineThatIsGoneCanBeTakenOver)
{
    const std::wstring part = made(L"part.vlra", 1);
    const fs::path note = fs::path(part).parent_path() / ".~part.vlra.lock";
    overwrite(note.wstring(), "{\"name\": \"Ada\", \"machine\": \"elsewhere\", \"process\": 1}");
    const DocumentWatch watch;
    answer(L"Document.Open " + part);
    ASSERT_TRUE(Vs::HeldFiles::holder(activeDocument()));
    EXPECT_TRUE(activeDocument()->isReadOnly());
    ASSERT_TRUE(held());
    ASSERT_EQ(held()->actions().size(), 2u);
    press(held(), 0);
    ASSERT_TRUE(held()) << "whether it lives isn't known by trying";

    answerBoxes(kCancel);
    press(held(), 1);
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_NE(boxes().front().find(L"Ada"), std::wstring::npos);
    EXPECT_TRUE(Vs::HeldFiles::holder(activeDocument()));
    answerBoxes(kGoOn);
    press(held(), 1);
    EXPECT_FALSE(Vs::HeldFiles::holder(activeDocument()));
    EXPECT_FALSE(activeDocument()->isReadOnly());
    EXPECT_FALSE(held());
    answer(L"Design.Box 1 1 1");
    answer(L"Document.Save");
    EXPECT_EQ(contentOf(note).find("elsewhere"), std::string::npos);
}
