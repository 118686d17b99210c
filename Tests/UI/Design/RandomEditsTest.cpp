// Random commands on a model, and the way back and forth through all of them.

#include "Server/Component/Component.h"
#include "Server/DataModel/ModelDigest.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/Support/Seed.h"
#include "Tests/UI/Commands/EditComponents.h"

#include <algorithm>
#include <random>
#include <ranges>
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
        // By the kernel's own transactions, while undone steps wait to be redone.
        case 9:
            answer(L"Design.Mirror \"" + part + L"\" X");
            break;
        case 10:
            answer(L"Design.Box 1 1 " + std::to_wstring(number + 1));
            break;
        case 11:
            answer(L"Script.BeginTransaction Nothing");
            answer(L"Design.Box 2 2 2 0," + name + L",0");
            answer(L"Design.Box 2 2 2");
            answer(L"Script.AbortTransaction");
            break;
        default:
            answer(L"NamedView.AddNamedView");
        }
    }

    static uint64_t digest() { return Vs::modelDigest(*asset()); }

    static constexpr unsigned kKinds = 14;
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
        // Now and then part of the way back, and part of that forward again.
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

namespace {

/// The expected children of the model's root.
class PlainModel
{
public:
    struct Part
    {
        std::wstring name;
        double x;
        bool visible;
        bool operator==(const Part&) const = default;
    };
    using Parts = std::vector<Part>;

    static Parts of(const Vs::Component& root)
    {
        Parts parts;
        for (const auto& child : root.children)
            parts.push_back({child->name, child->placement.matrix().entry[0][3], child->visible});
        return parts;
    }

    explicit PlainModel(Parts parts) : m_steps{std::move(parts)} {}

    const Parts& parts() const { return m_steps[m_now]; }
    /// A copy to be changed, which is the model from now on.
    Parts& change()
    {
        m_steps.resize(m_now + 1);
        m_steps.push_back(m_steps.back());
        return m_steps[++m_now];
    }
    bool undo() { return m_now > 0 && m_now-- > 0; }
    bool redo() { return m_now + 1 < m_steps.size() && ++m_now > 0; }

    std::wstring path(size_t index) const
    {
        const std::wstring& name = parts()[index].name;
        const auto isNamed = [&](const Part& part) { return part.name == name; };
        const auto all = std::ranges::count_if(parts(), isNamed);
        const auto before = std::ranges::count_if(parts() | std::views::take(index + 1), isNamed);
        return L'"' + name + (all > 1 ? L":" + std::to_wstring(before) : L"") + L'"';
    }
    std::wstring freeName(const std::wstring& kind) const
    {
        for (int number = 1;; ++number)
            if (const std::wstring name = kind + std::to_wstring(number);
                std::ranges::none_of(parts(), [&](const Part& part) { return part.name == name; }))
                return name;
    }

private:
    std::vector<Parts> m_steps;
    size_t m_now = 0;
};

} // namespace

TEST_F(RandomEditsTest, TenThousandPartsAreAtEachStepThoseOfAPlainList)
{
    answer(L"Design.Pattern Box2 X 3 100 Y 3 100");
    answer(L"Design.Separate Box2:2");
    const Vs::Component& root = *asset()->components();
    PlainModel plain(PlainModel::of(root));
    ASSERT_GT(plain.parts().size(), 10000u);
    for (int number = 0; number < 100; ++number) {
        const size_t index = random() % plain.parts().size();
        const std::wstring path = plain.path(index), text = std::to_wstring(number);
        switch (random() % 9) {
        case 0:
            answer(L"Design.Box 1 1 1 " + text + L",0,0");
            if (const std::wstring name = plain.freeName(L"Box"); true)
                plain.change().push_back({name, double(number), true});
            break;
        case 1:
            answer(L"Design.Sphere 1 " + text + L",0,0");
            if (const std::wstring name = plain.freeName(L"Sphere"); true)
                plain.change().push_back({name, double(number), true});
            break;
        case 2:
            answer(L"Design.Copy " + path + L" 1 0 0");
            if (PlainModel::Part copy = plain.parts()[index]; true)
                plain.change().push_back({copy.name, copy.x + 1, copy.visible});
            break;
        case 3:
            answer(L"Design.Move " + path + L" 2 0 0");
            plain.change()[index].x += 2;
            break;
        case 4:
            answer(L"Selection.Select " + path);
            answer(L"Commands.Start DeleteCommand");
            if (auto& parts = plain.change(); true)
                parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(index));
            break;
        case 5:
            if (const std::wstring name = L"Box" + text; plain.parts()[index].name != name) {
                answer(L"Selection.Select " + path);
                answer(L"VuCommands.RenameCommand " + name);
                plain.change()[index].name = name;
            }
            break;
        case 6:
            if (plain.parts()[index].visible) {
                answer(L"Design.Hide " + path);
                plain.change()[index].visible = false;
            }
            break;
        case 7:
            for (auto steps = random() % 4; steps > 0 && plain.undo(); --steps)
                answer(L"VuCommands.UndoCmd");
            break;
        default:
            for (auto steps = random() % 3; steps > 0 && plain.redo(); --steps)
                answer(L"VuCommands.RedoCmd");
        }
        ASSERT_TRUE(PlainModel::of(root) == plain.parts())
            << "seed " << TestSupport::seed() << ", change " << number;
    }
    while (plain.undo())
        answer(L"VuCommands.UndoCmd");
    EXPECT_TRUE(PlainModel::of(root) == plain.parts());
    while (plain.redo())
        answer(L"VuCommands.RedoCmd");
    EXPECT_TRUE(PlainModel::of(root) == plain.parts());
    saveAndReopen(L"thousands.vlra");
    EXPECT_TRUE(PlainModel::of(*asset()->components()) == plain.parts());
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
