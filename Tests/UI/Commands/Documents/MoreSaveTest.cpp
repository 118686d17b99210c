// Revert, Save a Copy and Save All.

#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/Application.h"

#include <boost/filesystem/operations.hpp>

using namespace Vu;

namespace {

namespace fs = boost::filesystem;
using TestSupport::contentOf;

constexpr int kGoOn = 0;
constexpr int kCancel = 1;

class MoreSaveTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        emptyScratch(L"more");
    }
    void TearDown() override
    {
        Application::testing(true);
        WithProgram::TearDown();
    }
    static std::wstring file(const std::wstring& name) { return scratch(L"more/" + name); }
    static void newBox()
    {
        answer(L"Design.New");
        answer(L"Design.Box 10 20 30");
    }
    /// Except for the clip planes, which drawing changes.
    static std::wstring camera()
    {
        std::wstring text = answer(L"Camera.Dump");
        return text.erase(text.find(L" Near"), text.find(L" Width") - text.find(L" Near"));
    }
    static bool hasPart(const wchar_t* name)
    {
        return run(std::wstring(L"Selection.Select ") + name).first == 0;
    }
};

} // namespace

TEST_F(MoreSaveTest, RevertGoesBackToTheFileAndKeepsViewAndSelection)
{
    newBox();
    answer(L"Document.SaveAs " + file(L"part.vlra"));
    answer(L"Design.Box 1 1 1");
    answer(L"Camera.Set 100,-200,300 1,2,3 0,0.6,0.8 0.1 54321 33 44 1");
    const std::wstring before = camera();
    answer(L"Commands.Start MeasureCommand");
    answer(L"Commands.SetInput SelectionInput1 Box1/Edge1");
    answer(L"Selection.Select Box1/Face2 Box2");
    answer(L"Document.Revert");
    ASSERT_EQ(documents(), 1u);
    EXPECT_NE(answer(L"Commands.Inputs").find(L"SelectionInput1 Box1:1/Body1/Edge1\nSelectionInput2 \"\""),
              std::wstring::npos)
        << answer(L"Commands.Inputs");
    answer(L"Commands.Cancel");
    EXPECT_EQ(activeDocument()->path(), file(L"part.vlra"));
    EXPECT_FALSE(activeDocument()->isDirty(false));
    EXPECT_EQ(answer(L"Selection.List"), L"Box1:1/Body1/Face2");
    EXPECT_EQ(camera(), before);
    EXPECT_FALSE(hasPart(L"Box2"));
    // It is an ordinary document.
    answer(L"Design.Box 5 5 5");
    answer(L"Document.Save");
}

TEST_F(MoreSaveTest, RevertReadsAForeignFileAgainAndAlsoADocumentBehind)
{
    newBox();
    answer(L"Design.Box 5 5 5");
    answer(L"Asset.Export " + file(L"part.step"));
    constexpr int kDontSave = 1;
    answerBoxes(kDontSave);
    answer(L"Document.CloseAll");
    answer(L"Document.Open " + file(L"part.step"));
    // What is hidden isn't in the file.
    answer(L"Design.Hide Box2");
    const auto hidden = [&] {
        return answer(L"Script.Component Box2").find(L"\"visible\":false") != std::wstring::npos;
    };
    EXPECT_TRUE(hidden());
    answer(L"Document.Revert");
    EXPECT_TRUE(hidden());
    newBox();
    answer(L"Document.Rename Front");
    answer(L"Document.Revert " + file(L"part.step"));
    EXPECT_EQ(activeDocument()->importedFrom(), file(L"part.step"));
    EXPECT_EQ(documents(), 2u);
}

TEST_F(MoreSaveTest, WhatCannotBeReadAgainStaysAsItWas)
{
    EXPECT_EQ(failure(L"Document.Revert"), L"There is no active document");
    newBox();
    EXPECT_FALSE(applicable(L"RevertDocumentCommand"));
    EXPECT_NE(failure(L"Document.Revert"), L"");
    answer(L"Document.SaveAs " + file(L"part.vlra"));
    answer(L"Design.Box 1 1 1");
    EXPECT_TRUE(applicable(L"RevertDocumentCommand"));
    answerBoxes(kGoOn);
    for (const bool damaged : {true, false}) {
        if (damaged)
            TestSupport::overwrite(file(L"part.vlra"), "PK no package");
        else
            fs::remove(file(L"part.vlra"));
        EXPECT_NE(failure(L"Document.Revert"), L"");
        ASSERT_EQ(documents(), 1u);
        EXPECT_EQ(activeDocument()->path(), file(L"part.vlra"));
        EXPECT_TRUE(activeDocument()->isDirty(false));
        EXPECT_TRUE(hasPart(L"Box2"));
    }
    EXPECT_NE(failure(L"Document.Revert nothing.vlra"), L"");
}

TEST_F(MoreSaveTest, AButtonAsksBeforeItRevertsAndALineDoesNot)
{
    newBox();
    answer(L"Document.SaveAs " + file(L"part.vlra"));
    CommandDefinition* revert = definition(L"RevertDocumentCommand");
    const auto press = [&](int button, const wchar_t* part) {
        answer(L"Design.Box 1 1 1");
        answerBoxes(button);
        Application::testing(false);
        revert->runByHand(ECommandAccessPoint::Toolbar);
        Application::get()->flushDeferredTasks();
        Application::testing(true);
        return hasPart(part);
    };
    EXPECT_TRUE(press(kCancel, L"Box2"));
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_NE(boxes().front().find(L"part"), std::wstring::npos);
    EXPECT_FALSE(press(kGoOn, L"Box2"));
    EXPECT_EQ(boxes().size(), 2u);
    answer(L"Design.Box 1 1 1");
    Application::testing(false);
    answer(L"Document.Revert");
    Application::testing(true);
    EXPECT_EQ(boxes().size(), 2u);
}

TEST_F(MoreSaveTest, ACopyLeavesTheDocumentAsItIs)
{
    newBox();
    answer(L"Document.SaveAs " + file(L"part.vlra"));
    const std::string saved = contentOf(file(L"part.vlra"));
    answer(L"Design.Box 1 1 1");
    answer(L"Document.SaveCopy " + file(L"copy"));
    EXPECT_EQ(activeDocument()->path(), file(L"part.vlra"));
    EXPECT_TRUE(activeDocument()->isDirty(false));
    EXPECT_EQ(contentOf(file(L"part.vlra")), saved);
    answer(L"Document.Open " + file(L"copy.vlra"));
    EXPECT_TRUE(hasPart(L"Box2"));

    answer(L"Document.Activate " + file(L"part.vlra"));
    EXPECT_NE(failure(L"Document.SaveCopy " + file(L"part.vlra")).find(L"part.vlra"), std::wstring::npos);
    EXPECT_NE(failure(L"Document.SaveCopy " + file(L"copy.vlra")).find(L"copy.vlra"), std::wstring::npos)
        << "that of another open document";
    EXPECT_NE(failure(L"Document.SaveCopy " + file(L"nowhere/copy.vlra")), L"");
    TestSupport::overwrite(file(L"locked.vlra"), "as it was");
    fs::permissions(file(L"locked.vlra"), fs::owner_read);
    EXPECT_NE(failure(L"Document.SaveCopy " + file(L"locked.vlra")).find(L"write-protected"),
              std::wstring::npos);
    EXPECT_EQ(contentOf(file(L"locked.vlra")), "as it was");
    for (const wchar_t* name : {L"", L" .", L" a b"})
        EXPECT_NE(failure(std::wstring(L"Document.SaveCopy") + name), L"");
    EXPECT_TRUE(activeDocument()->isDirty(false));
    EXPECT_EQ(contentOf(file(L"part.vlra")), saved);
    // Saving it afterwards detects no change by others.
    answer(L"Document.Save");
    EXPECT_FALSE(activeDocument()->isDirty(false));
}

TEST_F(MoreSaveTest, AllAreSavedAndOneThatCannotBeKeepsNoneFromIt)
{
    for (const wchar_t* name : {L"a.vlra", L"b.vlra", L"c.vlra"}) {
        newBox();
        answer(std::wstring(L"Document.SaveAs ") + file(name));
    }
    EXPECT_FALSE(applicable(L"SaveAllDocumentsCommand"));
    for (const wchar_t* name : {L"a.vlra", L"b.vlra", L"c.vlra"}) {
        answer(std::wstring(L"Document.Activate ") + file(name));
        answer(L"Design.Box 1 1 1");
    }
    fs::permissions(file(L"b.vlra"), fs::owner_read);
    const std::wstring reason = failure(L"Document.SaveAll");
    EXPECT_NE(reason.find(L"b.vlra"), std::wstring::npos) << Vs::Strings::narrow(reason);
    EXPECT_EQ(reason.find(L"a.vlra"), std::wstring::npos) << Vs::Strings::narrow(reason);
    const auto isDirty = [](const wchar_t* name) {
        return Vs::DocumentMgr::get()->document(file(name))->isDirty(false);
    };
    EXPECT_FALSE(isDirty(L"a.vlra"));
    EXPECT_TRUE(isDirty(L"b.vlra"));
    EXPECT_FALSE(isDirty(L"c.vlra"));
    fs::permissions(file(L"b.vlra"), fs::owner_read | fs::owner_write);
    answer(L"Document.SaveAll");
    EXPECT_FALSE(isDirty(L"b.vlra"));
}
