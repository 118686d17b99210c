// Random commands on a model, and the way back and forth through all of them.

#include "Server/Component/Component.h"
#include "Server/DataModel/ModelDigest.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/Support/Seed.h"
#include "Tests/UI/Commands/EditComponents.h"

#include <random>
#include <set>

namespace {

class RandomEditsTest : public CommandsTests::EditComponents
{
protected:
    std::wstring anyPart()
    {
        const auto all = paths();
        return all.empty() ? std::wstring() : all[random() % all.size()];
    }

    void edit(int number)
    {
        const std::wstring name = std::to_wstring(number), part = anyPart();
        if (part.empty() || random() % kKinds == 0) {
            answer(L"Design.Cylinder 1 2 " + name + L",0,0");
            return;
        }
        select({part});
        switch (random() % (kKinds - 1)) {
        case 0:
            answer(L"VuCommands.RenameCommand \"Part " + name + L'"');
            break;
        case 1:
            answer(L"Commands.Start DeleteCommand");
            break;
        case 2:
            answer(L"Commands.Start ToggleVisibilityCommand");
            break;
        case 3:
            answer(L"Design.ShowAll");
            break;
        case 4:
            answer(L"Design.Copy \"" + part + L"\" 1 0 0." + name);
            break;
        case 5:
            answer(L"Design.Pattern \"" + part + L"\" X 1 3");
            break;
        case 6:
        case 7:
            answer(std::wstring(L"Design.Colour ") + (random() % 2 ? L"Red \"" : L"Blue \"") + part + L'"');
            break;
        case 8:
            answer(L"Design.Move \"" + part + L"\" 0 0." + name + L" 0");
            break;
        default:
            answer(L"NamedView.AddNamedView");
        }
    }

    static uint64_t digest() { return Vs::modelDigest(*asset()); }

    static constexpr unsigned kKinds = 11;
    std::mt19937 random{TestSupport::seed()};
};

} // namespace

TEST_F(RandomEditsTest, EveryUndoAndRedoRestoresTheWholeModel)
{
    std::vector<uint64_t> digests{digest()};
    const unsigned first = steps();
    const auto walk = [&](const wchar_t* line, unsigned to) {
        answer(line);
        ASSERT_EQ(steps(), first + to);
        ASSERT_EQ(digest(), digests[to]) << "after " << to << " steps";
    };
    for (int number = 0; number < 60; ++number) {
        // Now and then some of the way back, and a part of it forth again.
        const auto done = static_cast<unsigned>(digests.size() - 1);
        if (done > 0 && random() % 5 == 0) {
            const auto back = static_cast<unsigned>(1 + random() % done);
            const auto forth = static_cast<unsigned>(random() % (back + 1));
            for (unsigned i = 1; i <= back; ++i)
                walk(L"VuCommands.UndoCmd", done - i);
            for (unsigned i = 1; i <= forth; ++i)
                walk(L"VuCommands.RedoCmd", done - back + i);
            digests.resize(done - back + forth + 1);
        }
        edit(number);
        if (steps() > first + digests.size() - 1)
            digests.push_back(digest());
        ASSERT_EQ(steps(), first + digests.size() - 1);
        ASSERT_EQ(digest(), digests.back());
    }
    const auto all = static_cast<unsigned>(digests.size() - 1);
    for (unsigned i = all; i-- > 0;)
        walk(L"VuCommands.UndoCmd", i);
    for (unsigned i = 1; i <= all; ++i)
        walk(L"VuCommands.RedoCmd", i);
    saveAndReopen(L"edited.vlra");
    EXPECT_EQ(digest(), digests.back());
}

TEST_F(RandomEditsTest, WhatIsSelectedIsLitAndNothingElseWhateverChanges)
{
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset()->adapter());
    ASSERT_TRUE(scene);
    for (int number = 0; number < 120; ++number) {
        const CommandsTests::Texts all = paths();
        CommandsTests::Texts some;
        for (const std::wstring& each : all)
            if (random() % 3 > 0)
                some.push_back(each);
        if (const auto kind = random() % 6; kind == 0)
            select(some);
        else if (kind == 1 && steps() > 0)
            answer(L"VuCommands.UndoCmd");
        else if (kind == 2)
            std::ignore = run(L"VuCommands.RedoCmd");
        else if (kind == 3 && !all.empty())
            answer(L"Design.Colour Green \"" + anyPart() + L'"');
        else if (kind == 4 && !all.empty())
            answer(L"Design.Move \"" + anyPart() + L"\" 1 0 0");
        else if (kind == 5)
            answer(L"Design.Box 1 1 1 0,0," + std::to_wstring(number));
        std::set<std::string> lit, chosen;
        for (const auto& child : asset()->components()->children)
            if (scene->node(child->id)->highlight() == Rendra::Graphics::Highlight::Selected)
                lit.insert(child->id);
        for (const auto& each : selected().selections())
            chosen.insert(Vs::cast<Vs::LogicalSelection>(each.get())->componentId());
        ASSERT_EQ(lit, chosen) << "seed " << TestSupport::seed() << ", change " << number;
    }
}
