#include "UI/Base/Session/Clipboard.h"

#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/Selection/IPasteSource.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Tests/UI/Commands/EditComponents.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Session/SessionMgr.h"

namespace {

using CommandsTests::Texts;

class ClipboardCommands : public CommandsTests::EditComponents
{
protected:
    static Vu::Clipboard& clipboard() { return *Vu::SessionMgr::get()->globalClipboard(); }
    static Texts selectedPaths()
    {
        Texts texts;
        for (const auto& selection : selected().selections())
            texts.push_back(Vs::pathText(Vs::cast<Vs::LogicalSelection>(selection.get())->path(), *asset()));
        return texts;
    }
    /// The position of the component, as that of its own origin.
    static GkPoint3d placeOf(const std::wstring& component)
    {
        return Vs::placementOf(path(component), *asset()).value() * GkPoint3d();
    }
    static std::wstring volumeOf(const std::wstring& object)
    {
        return answer(L"Measure.Volume \"" + object + L"\" /Exact");
    }
    /// A second design beside the first one, which becomes the active one; returns a way back to the first.
    static std::wstring insertOther()
    {
        const std::wstring first = asset()->name();
        answer(L"VuCommands.InsertAssetCmd VeloraAssetType");
        return first;
    }
};

TEST_F(ClipboardCommands, PasteCopiesAsOneStepAndAsOftenAsIsWanted)
{
    EXPECT_FALSE(applicable(L"PasteCommand"));
    EXPECT_FALSE(applicable(L"CopyToClipboardCommand"));
    select({L"Box1", L"Box3"});
    ASSERT_TRUE(applicable(L"CopyToClipboardCommand"));
    answer(L"VuCommands.CopyToClipboardCmd");
    const unsigned before = steps();
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box2:1", L"Box3:1", L"Box1:2", L"Box3:2"}));
    EXPECT_EQ(selectedPaths(), (Texts{L"Box1:2", L"Box3:2"}));
    EXPECT_EQ(steps(), before + 1);
    EXPECT_NEAR(placeOf(L"Box3:2").x, 10, 1e-9);
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths().size(), 7u);
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box2:1", L"Box3:1"}));
    ASSERT_TRUE(Vs::Transaction::redo(asset()));
    saveAndReopen(L"pasted.vlra");
    EXPECT_EQ(paths().size(), 5u);
    EXPECT_EQ(volumeOf(L"Box3:2"), volumeOf(L"Box3:1"));
}

TEST_F(ClipboardCommands, CutTakesEffectAtThePasteAndOnce)
{
    const Texts before = paths();
    select({L"Box2"});
    answer(L"VuCommands.CutCmd");
    EXPECT_EQ(paths(), before) << "nothing is taken away before it is pasted";
    const unsigned steps = this->steps();
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box3:1", L"Box2:1"}));
    EXPECT_EQ(this->steps(), steps + 1);
    EXPECT_FALSE(applicable(L"PasteCommand"));
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), before);
}

TEST_F(ClipboardCommands, PasteIntoAnotherModel)
{
    const std::wstring volume = volumeOf(L"Box3");
    select({L"Box2", L"Box3"});
    answer(L"VuCommands.CutCmd");
    const std::wstring first = insertOther();
    ASSERT_EQ(paths(), Texts());
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths(), (Texts{L"Box2:1", L"Box3:1"}));
    EXPECT_EQ(volumeOf(L"Box3"), volume);
    EXPECT_NEAR(placeOf(L"Box3").x, 10, 1e-9);
    EXPECT_EQ(steps(), 1u);
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), Texts());
    ASSERT_TRUE(Vs::Transaction::redo(asset()));

    answer(L"Asset.Activate \"" + first + L'"');
    EXPECT_EQ(paths(), (Texts{L"Box1:1"})) << "what was cut is gone here, in a step of its own";
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Box2:1", L"Box3:1"}));
}

TEST_F(ClipboardCommands, ForgetAModelThatIsClosedAndPassOverWhatIsGone)
{
    select({L"Box1", L"Box2"});
    answer(L"VuCommands.CopyToClipboardCmd");
    select({L"Box1"});
    answer(L"Commands.Start DeleteCommand");
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths(), (Texts{L"Box2:1", L"Box3:1", L"Box2:2"}));
    select({L"Box3"});
    answer(L"VuCommands.CutCmd");
    answer(L"Commands.Start DeleteCommand");
    EXPECT_EQ(run(L"VuCommands.PasteCmd").first, 1);
    EXPECT_TRUE(clipboard().empty());
    select({L"Box2:1"});
    answer(L"VuCommands.CopyToClipboardCmd");
    answerBoxes(1);
    answer(L"Document.CloseAll");
    EXPECT_TRUE(clipboard().empty());
}

TEST_F(ClipboardCommands, KeepWhatAnAssemblyHasInItAndSharesWithOthers)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    const std::wstring plate = volumeOf(L"as1/plate_1");
    select({L"as1/l-bracket-assembly_1", L"as1/l-bracket-assembly_1/l-bracket_1", L"as1/plate_1"});
    const size_t inside = 11;
    const GkPoint3d place = placeOf(L"as1/l-bracket-assembly_1/nut-bolt-assembly_2/bolt_1");
    answer(L"VuCommands.CopyToClipboardCmd");
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths().size(), 28u + inside + 1u) << "the inner bracket goes with its assembly alone";
    EXPECT_NEAR(placeOf(L"l-bracket-assembly_1/nut-bolt-assembly_2/bolt_1").distanceTo(place), 0, 1e-6);

    insertOther();
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths().size(), inside + 1u);
    EXPECT_NEAR(placeOf(L"l-bracket-assembly_1/nut-bolt-assembly_2/bolt_1").distanceTo(place), 0, 1e-6);
    EXPECT_EQ(volumeOf(L"plate_1"), plate);
    Vs::Status status;
    const auto bodyOf = [&](const std::wstring& text) {
        return Vs::resolvePath(path(text), *asset(), status)->body.get();
    };
    EXPECT_EQ(bodyOf(L"l-bracket-assembly_1/nut-bolt-assembly_1/bolt_1"),
              bodyOf(L"l-bracket-assembly_1/nut-bolt-assembly_2/bolt_1"))
        << "a body that occurs twice is still one";
}

/// Something other than a component, which says what can be done with it.
class Shelf : public Vs::Implements<Shelf, Vs::SharedObject, Vs::DataModel::IPasteSource>
{
public:
    Shelf(bool cut, bool reorder) : m_cut(cut), m_reorder(reorder) {}
    bool canCut() const override { return m_cut; }
    bool canReorder() const override { return m_reorder; }
    Vs::PasteRequest* providePasteRequest(const std::vector<Vs::ObjectPath>&, bool,
                                          std::vector<Vs::ObjectPath>&) override
    {
        return nullptr;
    }

private:
    bool m_cut, m_reorder;
};

class ShelfSelection : public Vs::Implements<ShelfSelection, Vs::LogicalSelection>
{
public:
    ShelfSelection(Vs::Asset* asset, bool cut, bool reorder)
        : Implements(asset,
                     Vs::ObjectPath{.component = cut       ? "cut"
                                                 : reorder ? "reorder"
                                                           : "fixed"},
                     Vs::StrongRef<Vs::Selection>()),
          m_cut(cut),
          m_reorder(reorder)
    {
    }
    Vs::StrongRef<Vs::SharedObject> leaf(Vs::Asset&) const override
    {
        return Vs::StrongRef<Vs::SharedObject>(new Shelf(m_cut, m_reorder));
    }

private:
    bool m_cut, m_reorder;
};

TEST_F(ClipboardCommands, CutAsksEachObjectAndClearsTheClipboardInAnyCase)
{
    const auto put = [&](bool cut, bool reorder) {
        selected().add(Vs::StrongRef<Vs::Selection>(new ShelfSelection(asset(), cut, reorder)));
    };
    select({L"Box1"});
    EXPECT_TRUE(definition(L"CutCommand")->addToContextMenu());
    put(false, true);
    EXPECT_FALSE(definition(L"CutCommand")->addToContextMenu()) << "one that can't be cut hides the entry";
    put(false, false);
    answer(L"VuCommands.CutCmd");
    EXPECT_EQ(clipboard().entries().size(), 2u) << "what can be reordered is taken along";
    answer(L"VuCommands.PasteCmd");
    EXPECT_EQ(paths().size(), 3u) << "an object without a request is passed over";
    selected().clear();
    put(false, false);
    answer(L"VuCommands.CutCmd");
    EXPECT_TRUE(clipboard().empty());
    selected().clear();
    EXPECT_FALSE(definition(L"CutCommand")->addToContextMenu());
}

} // namespace
