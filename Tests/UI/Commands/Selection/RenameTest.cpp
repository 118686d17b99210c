#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/DataModel/Selection/RenameRequest.h"
#include "Tests/UI/Commands/EditComponents.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace {

using CommandsTests::Texts;
using RenameComponents = CommandsTests::EditComponents;

TEST_F(RenameComponents, GiveTheSelectedOnesTheNameAsOneStep)
{
    const Texts before = paths();
    ASSERT_EQ(before, (Texts{L"Box1:1", L"Box2:1", L"Box3:1"}));
    const unsigned steps = this->steps();
    select({L"Box1", L"Box3"});
    answer(L"VuCommands.RenameCommand \"Deck plate\"");
    EXPECT_EQ(paths(), (Texts{L"Deck plate:1", L"Box2:1", L"Deck plate:2"}));
    EXPECT_EQ(this->steps(), steps + 1);
    EXPECT_EQ(Vs::Transaction::undoName(asset()), L"Rename");
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), before);
    ASSERT_TRUE(Vs::Transaction::redo(asset()));
    saveAndReopen(L"renamed.vlra");
    EXPECT_EQ(paths(), (Texts{L"Deck plate:1", L"Box2:1", L"Deck plate:2"}));
}

// Names of this kind are hidden if a file brings them, but not if the user wants them.
TEST_F(RenameComponents, TakeNamesThatLookMadeUp)
{
    select({L"Box3"});
    for (const wchar_t* name : {L"42", L"NAUO7"}) {
        answer(std::wstring(L"VuCommands.RenameCommand ") + name);
        EXPECT_EQ(paths().back(), std::wstring(name) + L":1");
    }
    saveAndReopen(L"numbered.vlra");
    EXPECT_EQ(paths().back(), L"NAUO7:1");
}

TEST_F(RenameComponents, ChangeNothingQuietlyWhereItCannotBeDone)
{
    const Texts before = paths();
    const unsigned steps = this->steps();
    answer(L"VuCommands.RenameCommand Nobody");
    select({L"Box1"});
    answer(L"VuCommands.RenameCommand \"\"");
    answer(L"VuCommands.RenameCommand \" \"");
    answer(L"VuCommands.RenameCommand");
    answer(L"VuCommands.RenameCommand two words");
    // One that can't be renamed keeps the others from being renamed.
    select({L"Box1", L"Box2/Body1/Face1"});
    answer(L"VuCommands.RenameCommand Plate");
    select({L"Box1", L"Box3"});
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(selected().size(), 1u) << "what is gone is no longer selected";
    ASSERT_TRUE(Vs::Transaction::redo(asset()));
    EXPECT_EQ(paths(), before);
    EXPECT_EQ(this->steps(), steps);
    answerBoxes(1);
    answer(L"Document.CloseAll");
    answer(L"VuCommands.RenameCommand Plate");
}

TEST_F(RenameComponents, TheRequestTellsWhyNot)
{
    const auto why = [](const std::vector<Vs::ObjectPath>& paths, const wchar_t* name) {
        Vs::Status status;
        Vs::Request* request = Vs::RenameRequest::make(asset(), paths, name);
        request->execute(asset(), status);
        request->destroy();
        return status.toString();
    };
    EXPECT_EQ(why({path(L"Box1")}, L"\t"), L"Rename: a name needs at least one letter or digit that shows.");
    EXPECT_EQ(why({}, L"Plate"), L"Rename: no object that can be renamed was given.");
    EXPECT_EQ(why({path(L"Box1/Body1")}, L"Plate"),
              L"Rename: \"Box1:1/Body1\" has no name of its own; only components have one.");
    EXPECT_NE(why({{"0:9:9"}}, L"Plate").find(L"no longer"), std::wstring::npos);
}

/// Nobody may edit a write-protected document.
class Guard : public Vs::IDocMgmtHandler
{
    Vs::EDocMgmtOpCode onEditingReadOnlyDocuments(const Documents&) override { return Vs::eDocMgmtStop; }
};

TEST_F(RenameComponents, LeaveAGuardedDocumentAlone)
{
    saveAndReopen(L"guarded.vlra");
    const boost::filesystem::path file(scratch(L"guarded.vlra"));
    permissions(file, boost::filesystem::owner_read);
    const Guard guard;
    const Texts before = paths();
    select({L"Box1"});
    answer(L"VuCommands.RenameCommand Plate");
    EXPECT_EQ(paths(), before);
    EXPECT_FALSE(asset()->isDirty(true));
    permissions(file, boost::filesystem::owner_read | boost::filesystem::owner_write);
}

TEST_F(RenameComponents, InAnAssemblyTheNameShowsWhereverItOccurs)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    select({L"as1/l-bracket-assembly_2/nut-bolt-assembly_1/bolt_1"});
    answer(L"VuCommands.RenameCommand Screw");
    saveAndReopen(L"assembly.vlra");
    const Texts renamed = paths();
    EXPECT_EQ(std::count_if(renamed.begin(), renamed.end(),
                            [](const std::wstring& text) { return text.ends_with(L"/Screw:1"); }),
              6);
    EXPECT_EQ(path(L"as1/l-bracket-assembly_1/nut-bolt-assembly_3/Screw").leaf,
              Vs::ObjectPath::Leaf::Component);
}

} // namespace
