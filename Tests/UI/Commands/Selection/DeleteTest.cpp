#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/IDeletable.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Tests/UI/Commands/EditComponents.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

namespace {

using CommandsTests::Texts;
using DeleteComponents = CommandsTests::EditComponents;
using Vs::ObjectPath;

TEST_F(DeleteComponents, TakeAllThatIsSelectedAsOneStep)
{
    const Texts before = paths();
    const unsigned steps = this->steps();
    EXPECT_FALSE(applicable(L"DeleteCommand"));
    select({L"Box2", L"Box3"});
    ASSERT_TRUE(applicable(L"DeleteCommand"));
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths(), (Texts{L"Box1:1"}));
    EXPECT_EQ(this->steps(), steps + 1);
    EXPECT_TRUE(selected().empty());
    EXPECT_FALSE(applicable(L"DeleteCommand"));
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), before);
    ASSERT_TRUE(Vs::Transaction::redo(asset()));
    // Later objects take no name or place of deleted ones.
    answer(L"Design.Box 4 4 4 0,10,0");
    saveAndReopen(L"deleted.vlra");
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box2:1"}));
    select({L"Box1", L"Box2"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths(), Texts());
    saveAndReopen(L"emptied.vlra");
    EXPECT_EQ(paths(), Texts());
}

TEST_F(DeleteComponents, LeaveWhatIsNoComponentOrIsGone)
{
    const Texts before = paths();
    select({L"Box1/Body1/Face1", L"Box2/Body1"});
    EXPECT_FALSE(applicable(L"DeleteCommand"));
    select({L"Box3"});
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_FALSE(applicable(L"DeleteCommand"));
    ASSERT_TRUE(Vs::Transaction::redo(asset()));
    EXPECT_EQ(paths(), before);
}

TEST_F(DeleteComponents, InAnAssemblyGoFromWhereverTheyOccur)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    const Texts before = paths();
    ASSERT_EQ(before.size(), 28u);
    // The parent comes first and takes the child along, which stays in the other bracket.
    select({L"as1/l-bracket-assembly_1", L"as1/l-bracket-assembly_1/l-bracket_1", L"as1/plate_1"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), 28u - 11u - 1u);
    path(L"as1/l-bracket-assembly_2/l-bracket_1");
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), before);

    select({L"as1/l-bracket-assembly_1/nut-bolt-assembly_1/bolt_1"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), 28u - 6u);
    const Texts without = paths();
    saveAndReopen(L"bolts.vlra");
    EXPECT_EQ(paths(), without);
    // A pattern in an assembly that occurs several times is deleted from all of them.
    answer(L"Design.Pattern as1/rod-assembly_1/nut_2 X 50 3");
    answer(L"Design.Pattern as1/l-bracket-assembly_1/nut-bolt-assembly_2/nut_3 X 50 3");
    EXPECT_EQ(paths().size(), without.size() + 2 + 2 * 6);
    select({L"as1/l-bracket-assembly_1/nut-bolt-assembly_1/nut_3:2",
            L"as1/l-bracket-assembly_2/nut-bolt-assembly_3/nut_3:2", L"as1/rod-assembly_1/nut_2:3"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths(), without);
    // An assembly that has lost all its parts still exists.
    select({L"as1/rod-assembly_1/nut_1", L"as1/rod-assembly_1/nut_2", L"as1/rod-assembly_1/rod_1"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), without.size() - 3);
    path(L"as1/rod-assembly_1");
    select({L"as1"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths(), Texts());
}

TEST_F(DeleteComponents, OfAPatternGoAloneIfAPersonSaysSoAndAfterItWasTakenApart)
{
    answer(L"Design.Pattern Box1 X 5 4");
    const Texts before = paths();
    ASSERT_EQ(before.size(), 6u);
    int choice = 2;
    size_t asked = 0;
    Vu::MessageBox::responder([&](const Vu::MessageBox&) {
        ++asked;
        return choice;
    });
    const auto deleteByKey = [&](const Texts& texts) {
        select(texts);
        Vu::CommandContext context = Vu::CommandContext::activeContext();
        context.accessPoint(Vu::ECommandAccessPoint::HotKey);
        EXPECT_TRUE(Vu::CommandDefinitionMgr::get()
                        ->findCommandDefinitionById(L"DeleteCommand")
                        ->executeCommand(context)
                        .isOk());
    };
    deleteByKey({L"Box1:3"});
    EXPECT_EQ(paths(), before) << "cancelled";
    EXPECT_EQ(selected().size(), 1u);
    choice = 0;
    deleteByKey({L"Box1:3"});
    EXPECT_EQ(paths().size(), before.size() - 1);
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), before);
    ASSERT_TRUE(Vs::Transaction::redo(asset()));
    choice = 1;
    deleteByKey({L"Box1:2"});
    EXPECT_EQ(paths().size(), before.size() - 3) << "the others are still a pattern";
    EXPECT_EQ(asked, 3u);
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    // A user who selects the whole pattern isn't asked.
    deleteByKey({L"Box1:2", L"Box1:3"});
    EXPECT_EQ(asked, 3u);
    EXPECT_EQ(paths().size(), before.size() - 3);
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    answer(L"Design.Separate Box1:2");
    EXPECT_NE(failure(L"Design.Separate Box1:2").find(L"pattern"), std::wstring::npos);
    select({L"Box1:2"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), before.size() - 2);
    ASSERT_TRUE(Vs::Transaction::undo(asset()) && Vs::Transaction::undo(asset()));
    select({L"Box1:2"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), before.size() - 3) << "a line means all of them";
    Vu::MessageBox::responder(nullptr);
}

/// Expands the runs in the lists of groups, "0:1:1:4..6" to "0:1:1:4 0:1:1:5 0:1:1:6".
void namesEachMember(Vs::Asset& asset)
{
    size_t runs = 0;
    for (const auto& [key, value] : std::map(asset.settings())) {
        std::wistringstream words(value);
        std::wstring members;
        for (std::wstring word; key.starts_with("ComponentGroup.") && words >> word;) {
            const size_t to = word.find(L".."), number = word.rfind(L':', to) + 1;
            const int first = std::stoi(word.substr(number, to));
            const int last = to == word.npos ? first : std::stoi(word.substr(to + 2));
            runs += first < last;
            for (int each = first; each <= last; ++each)
                members += word.substr(0, number) + std::to_wstring(each) + L' ';
        }
        if (!members.empty())
            asset.setting(key, members);
    }
    EXPECT_GE(runs, 2u);
}

TEST_F(DeleteComponents, OfAPatternGoWithAllOfItsCopiesButTheOriginalGoesByItself)
{
    answer(L"Design.Pattern Box1 X 5 3");
    answer(L"Design.CircularPattern Box3 Z 360 4");
    answer(L"Design.Mirror Box2 X -1");
    saveAndReopen(L"patterns.vlra");
    const Texts before = paths();
    ASSERT_EQ(before.size(), 3u + 2u + 3u + 1u);
    select({L"Box1:2", L"Box2:1", L"Box3:3", L"Box1:3"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box3:1", L"Box2:1"}));
    EXPECT_EQ(steps(), 1u);
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), before);
    select({L"Box1:1"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), before.size() - 1);
    select({L"Box1:1"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), before.size() - 3);
    while (Vs::Transaction::undo(asset()))
        ;
    EXPECT_EQ(paths(), before);
    // Files of earlier versions list each member separately.
    namesEachMember(*asset());
    saveAndReopen(L"earlier.vlra");
    select({L"Box3:4"});
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(paths().size(), before.size() - 3);
}

/// Objects of another kind, which exist beside the model: a name, and what is deleted with it.
struct Toys
{
    std::map<std::string, std::vector<std::string>> there;
    std::vector<std::string> calls;
    bool together = false;
    std::function<size_t(size_t)> takes = [](size_t count) { return count; };
    std::string broken; ///< Deleting it fails.
};

class ToyRequest : public Vs::Implements<ToyRequest, Vs::Request>
{
public:
    ToyRequest(Toys& toys, std::vector<std::string> names)
        : Implements(L"Toys"), m_toys(toys), m_names(std::move(names))
    {
    }

protected:
    void onExecute(Vs::Asset&, Vs::Status& status) override
    {
        std::string call;
        for (const std::string& name : m_names) {
            call += name;
            if (name == m_toys.broken) {
                status.addError(L"broken toy");
                continue;
            }
            const std::vector<std::string> others = m_toys.there[name];
            m_toys.there.erase(name);
            for (const std::string& other : others)
                m_toys.there.erase(other);
        }
        m_toys.calls.push_back(call);
    }

private:
    Toys& m_toys;
    std::vector<std::string> m_names;
};

class Toy : public Vs::Implements<Toy, Vs::SharedObject, Vs::DataModel::IDeletable>
{
public:
    explicit Toy(Toys& toys) : m_toys(toys) {}
    bool canDelete(const ObjectPath& path) const override
    {
        if (path.component == "throws")
            throw std::runtime_error("no");
        return path.component != "fixed";
    }
    bool requiresMultiDelete(const ObjectPath&) const override { return m_toys.together; }
    Vs::Request* provideDeleteRequest(const ObjectPath& path) override
    {
        return path.component == "none" ? nullptr : new ToyRequest(m_toys, {path.component});
    }
    Vs::Request* provideMultiDeleteRequest(const std::vector<ObjectPath>& paths,
                                           std::vector<ObjectPath>& handled) override
    {
        std::vector<std::string> names;
        for (size_t i = 0; i < m_toys.takes(paths.size()); ++i) {
            handled.push_back(paths[i]);
            names.push_back(paths[i].component);
        }
        return names == std::vector<std::string>{"none"} ? nullptr : new ToyRequest(m_toys, names);
    }

private:
    Toys& m_toys;
};

class ToySelection : public Vs::Implements<ToySelection, Vs::LogicalSelection>
{
public:
    ToySelection(Vs::Asset* asset, const std::string& name, Toys& toys)
        : Implements(asset, name, Vs::StrongRef<Vs::Selection>()), m_toys(toys)
    {
    }
    Vs::StrongRef<Vs::SharedObject> leaf(Vs::Asset&) const override
    {
        return m_toys.there.contains(path().component) ? Vs::StrongRef<Vs::SharedObject>(new Toy(m_toys))
                                                       : nullptr;
    }

private:
    Toys& m_toys;
};

class DeleteObjects : public CommandsTests::EditComponents
{
protected:
    /// Selects all toys in the order of the names, and deletes.
    Vs::TextCommandResult remove(std::initializer_list<const char*> names)
    {
        selected().clear();
        for (const char* name : names) {
            toys.there.try_emplace(name);
            selected().add(Vs::StrongRef<Vs::Selection>(new ToySelection(asset(), name, toys)));
        }
        return run(L"Commands.Start DeleteCommand");
    }
    void TearDown() override
    {
        selected().clear();
        EditComponents::TearDown();
    }

    Toys toys;
};

using Calls = std::vector<std::string>;

TEST_F(DeleteObjects, OneByOneArePassedOverWhereTheyAreGoneOrGiveNoRequest)
{
    toys.there["parent"] = {"child"};
    toys.broken = "broken";
    remove({"fixed", "parent", "child", "none", "broken", "last"});
    EXPECT_EQ(toys.calls, (Calls{"parent", "broken", "last"}));
    EXPECT_TRUE(selected().empty());
}

TEST_F(DeleteObjects, TogetherGoGroupByGroupUntilOneFailsOrTakesNothing)
{
    toys.together = true;
    toys.takes = [](size_t count) { return std::min<size_t>(count, 2); };
    remove({"a", "b", "c", "d", "e"});
    EXPECT_EQ(toys.calls, (Calls{"ab", "cd", "e"}));
    toys.calls.clear();
    toys.broken = "c";
    EXPECT_EQ(remove({"a", "b", "c", "d", "e"}).first, 1);
    EXPECT_EQ(toys.calls, (Calls{"ab", "cd"}));
    toys.calls.clear();
    toys.takes = [](size_t) { return 1; };
    remove({"a", "none", "b"});
    EXPECT_EQ(toys.calls, (Calls{"a", "b"}));
    toys.calls.clear();
    toys.takes = [](size_t) { return 0; };
    remove({"a", "b"});
    EXPECT_EQ(toys.calls, (Calls{""}));
}

} // namespace
