#include "Server/Base/Strings.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Tests/Support/Seed.h"
#include "Tests/UI/Commands/EditComponents.h"
#include "Tests/UI/Commands/InBrowser.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionViewItem>

#include <fstream>
#include <optional>
#include <random>
#include <regex>
#include <sstream>

namespace {

using CommandsTests::Texts;

class ComponentsInTheBrowser : public CommandsTests::InBrowser<CommandsTests::EditComponents>
{
protected:
    QModelIndex item(const std::wstring& name) const { return below(tree->model()->index(1, 0), name); }
    /// The paths of the session's selection.
    static Texts selectedPaths()
    {
        Texts texts;
        for (const auto& selection : selected().selections())
            texts.push_back(Vs::pathText(Vs::cast<Vs::LogicalSelection>(selection.get())->path(), *asset()));
        return texts;
    }
    /// Types a name into the item's field.
    void type(const QModelIndex& index, const char* name)
    {
        tree->setCurrentIndex(index);
        tree->edit(index);
        auto* field = tree->findChild<QLineEdit*>();
        ASSERT_TRUE(field);
        field->setText(name);
        QTest::keyClick(field, Qt::Key_Return);
        QApplication::processEvents(); // The field delivers its text after the key.
        Vu::Application::get()->flushDeferredTasks();
        QApplication::processEvents();
    }
};

TEST_F(ComponentsInTheBrowser, AreSelectedInTheSessionAndStayMarkedThroughChanges)
{
    click(item(L"Box3"));
    click(item(L"Box1"), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(selectedPaths(), (Texts{L"Box3:1", L"Box1:1"}));
    answer(L"Design.Box 1 1 1");
    EXPECT_EQ(selectedPaths().size(), 2u);
    EXPECT_TRUE(tree->selectionModel()->isSelected(item(L"Box1")));
    EXPECT_FALSE(tree->selectionModel()->isSelected(item(L"Box4")));
    click(tree->model()->index(1, 0));
    EXPECT_TRUE(selected().empty());
}

TEST_F(ComponentsInTheBrowser, AreMarkedAsSoonAsTheyAreSelectedAnywhere)
{
    const auto object = [](const std::wstring& text) {
        Vs::Status status;
        return Vs::StrongRef<Vs::Selection>(
            new Vs::LogicalSelection(asset(), *Vs::findPath(*asset(), text, status), nullptr));
    };
    const auto isMarked = [&](const std::wstring& name) {
        return tree->selectionModel()->isSelected(item(name));
    };
    selected().replace({object(L"Box2"), object(L"Box3")});
    EXPECT_TRUE(isMarked(L"Box2") && isMarked(L"Box3") && !isMarked(L"Box1"));
    EXPECT_EQ(selectedPaths(), (Texts{L"Box2:1", L"Box3:1"}));
    selected().replace({object(L"Box1/Face2")});
    EXPECT_FALSE(isMarked(L"Box1") || isMarked(L"Box2"));
    EXPECT_EQ(selectedPaths(), (Texts{L"Box1:1/Body1/Face2"}));
    click(item(L"Box3"));
    EXPECT_EQ(selectedPaths(), (Texts{L"Box3:1"}));
    selected().clear();
    EXPECT_FALSE(tree->selectionModel()->hasSelection());
}

TEST_F(ComponentsInTheBrowser, AreGivenToTheToolThatRunsAndMarkedWhileItHoldsThem)
{
    const auto marked = [&] {
        Texts names;
        for (const wchar_t* name : {L"Box1", L"Box2", L"Box3"})
            if (tree->selectionModel()->isSelected(item(name)))
                names.emplace_back(name);
        return names;
    };
    const auto held = [](const wchar_t* key) {
        return activeSession()
            ->commandManager()
            ->activeCommand()
            ->commandInputSet()
            ->findInput(key)
            ->valueAsString();
    };
    select({L"Box3"});
    answer(L"Commands.Start SubtractCommand");
    QApplication::processEvents();
    click(item(L"Box1"));
    click(item(L"Box2"));
    EXPECT_EQ(held(L"Target"), L"Box3:1");
    EXPECT_EQ(held(L"Tools"), L"Box1:1|Box2:1");
    click(item(L"Box2"), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(held(L"Tools"), L"Box1:1");
    EXPECT_EQ(marked(), (Texts{L"Box1", L"Box3"}));
    answer(L"Commands.Cancel");
    EXPECT_EQ(marked(), (Texts{L"Box3"}));
    EXPECT_EQ(selectedPaths(), (Texts{L"Box3:1"})) << "what is selected stays what it was";
    answer(L"Commands.Start MeasureCommand");
    click(item(L"Box2"));
    EXPECT_EQ(held(L"SelectionInput1"), L"Box3:1") << "what was selected comes first";
    EXPECT_EQ(held(L"SelectionInput2"), L"Box2:1");
    EXPECT_EQ(marked(), (Texts{L"Box2", L"Box3"}));
    answer(L"Commands.Commit");
    EXPECT_EQ(marked(), (Texts{L"Box3"}));
}

TEST_F(ComponentsInTheBrowser, ANameThatIsTypedIsThatOfTheOneItem)
{
    tree->selectAll();
    type(item(L"Box2"), "Lid");
    EXPECT_EQ(paths(), (Texts{L"Box1:1", L"Lid:1", L"Box3:1"}));
    EXPECT_TRUE(item(L"Lid").isValid());
    type(item(L"Lid"), " ");
    EXPECT_TRUE(item(L"Lid").isValid());
    EXPECT_FALSE(tree->model()->flags(tree->model()->index(1, 0)) & Qt::ItemIsEditable);
}

TEST_F(ComponentsInTheBrowser, AreHiddenAndShownByTheirCheckMarksWhateverIsSelected)
{
    const auto isShown = [](const std::wstring& name) {
        return asset()->findComponent(path(name).component)->visible;
    };
    const auto clickMark = [&](const std::wstring& name) {
        tree->scrollTo(item(name));
        QApplication::processEvents();
        QStyleOptionViewItem option;
        option.initFrom(tree);
        option.rect = tree->visualRect(item(name));
        option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
        const QRect mark =
            tree->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, tree);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, mark.center());
        Vu::Application::get()->flushDeferredTasks();
        QApplication::processEvents();
    };
    for (const Texts& others : {Texts{}, Texts{L"Box1"}}) {
        for (const bool shown : {false, true}) {
            select(others);
            clickMark(L"Box2");
            EXPECT_EQ(isShown(L"Box2"), shown);
            EXPECT_TRUE(isShown(L"Box1"));
        }
        // The key on the focused item does the same.
        select(others);
        tree->selectionModel()->setCurrentIndex(item(L"Box3"), QItemSelectionModel::NoUpdate);
        for (const bool shown : {false, true}) {
            QTest::keyClick(tree, Qt::Key_Space);
            Vu::Application::get()->flushDeferredTasks();
            EXPECT_EQ(isShown(L"Box3"), shown);
        }
    }
}

TEST_F(ComponentsInTheBrowser, ThatLostFacesWithADamagedFileAreMarked)
{
    const std::string file = Vs::Strings::narrow(scratch(L"damaged.stp"));
    answer(L"Design.Export \"" + scratch(L"damaged.stp") + L'"');
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    std::ofstream(file) << std::regex_replace(text.str(), std::regex("ADVANCED_FACE"), "ADVANCED_FACF",
                                              std::regex_constants::format_first_only);
    answer(L"Document.Open \"" + scratch(L"damaged.stp") + L'"');
    QApplication::processEvents();
    QStringList told;
    for (const wchar_t* name : {L"Box1", L"Box2", L"Box3"}) {
        const QString damage = item(name).data(Qt::AccessibleDescriptionRole).toString();
        EXPECT_EQ(item(name).data(Qt::ToolTipRole).toString().contains("1 of 6 faces"), !damage.isEmpty());
        if (!damage.isEmpty())
            told << damage;
    }
    EXPECT_EQ(told, QStringList("1 of 6 faces are damaged in the file and not shown"));
}

TEST_F(ComponentsInTheBrowser, TheKeyAndTheMenuDelete)
{
    click(item(L"Box1"));
    QTest::keyClick(tree, Qt::Key_Delete);
    Vu::Application::get()->flushDeferredTasks();
    EXPECT_EQ(paths(), (Texts{L"Box2:1", L"Box3:1"}));
    EXPECT_EQ(menu(item(L"Box2"), "Delete"),
              QStringList({"Cut", "Copy", "Find in Canvas", "Hide", "Edit Component", "Delete", "Rename"}));
    EXPECT_EQ(paths(), (Texts{L"Box3:1"}));
    EXPECT_EQ(menu(tree->model()->index(1, 0), ""), QStringList());
}

/// Changes the model at random and checks that the rows that were read follow.
class RowsOfTheBrowser : public ComponentsInTheBrowser
{
protected:
    void change()
    {
        const Texts all = paths();
        const auto kind = random() % 6;
        if (kind > 3 || all.empty()) {
            answer(kind == 4 ? L"VuCommands.RedoCmd" : L"VuCommands.UndoCmd");
            return;
        }
        const std::wstring part = all[random() % all.size()];
        Texts chosen{part};
        for (const std::wstring& other : all)
            if (kind == 0 && other != part && random() % 3)
                chosen.push_back(other);
        select(chosen);
        if (kind == 0)
            answer(L"Design.Copy \"" + part + L"\" 1 0 0");
        else if (kind == 1)
            answer(L"Commands.Start ToggleVisibilityCommand");
        else
            answer(L"Commands.Start DeleteCommand");
    }
    void expectRows(const QModelIndex& parent, const Vs::Component& component, bool all)
    {
        ASSERT_EQ(tree->model()->hasChildren(parent), !component.children.empty()) << component.id;
        if (!all && !tree->isExpanded(parent))
            return;
        ASSERT_EQ(tree->model()->rowCount(parent), int(component.children.size())) << component.id;
        for (int row = 0; row < tree->model()->rowCount(parent); ++row) {
            const QModelIndex index = tree->model()->index(row, 0, parent);
            const Vs::Component& child = *component.children[static_cast<size_t>(row)];
            ASSERT_EQ(index.data(Qt::EditRole).toString().toStdWString(), child.name.text());
            ASSERT_EQ(index.parent(), parent);
            const bool isSelected = selected().contains(Vs::LogicalSelection(asset(), child.id, nullptr));
            ASSERT_EQ(tree->selectionModel()->isSelected(index), isSelected) << child.id;
            ASSERT_NO_FATAL_FAILURE(expectRows(index, child, all));
        }
    }
    QModelIndex root() const { return tree->model()->index(1, 0); }

    std::mt19937 random{TestSupport::seed()};
};

TEST_F(RowsOfTheBrowser, ComeAndGoWithTheComponentsAndLeaveTheOthersAsTheyAre)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    QApplication::processEvents();
    // Checking the model reads all of it.
    std::optional<QAbstractItemModelTester> tester;
    if (random() % 2)
        tester.emplace(tree->model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy resets(tree->model(), &QAbstractItemModel::modelReset);
    for (int number = 0; number < 80; ++number) {
        if (number % 8 == 0)
            for (QModelIndex index = root(); index.isValid(); index = tree->indexBelow(index))
                if (random() % 2)
                    tree->expand(index);
        change();
        ASSERT_NO_FATAL_FAILURE(expectRows(root(), *asset()->components(), false)) << "change " << number;
    }
    EXPECT_EQ(resets.count(), 0);
    ASSERT_NO_FATAL_FAILURE(expectRows(root(), *asset()->components(), true));
}

TEST_F(RowsOfTheBrowser, AFilterLeavesWhatHasItsWordsWithAllThatHoldsThemAndAllThatIsInThem)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    QApplication::processEvents();
    auto* filter = tree->parentWidget()->findChild<QLineEdit*>(QStringLiteral("browserFilter"));
    ASSERT_TRUE(filter);
    const auto has = [](const Vs::Component& component, const QString& words) {
        const QString name = QString::fromStdWString(component.name);
        return std::ranges::all_of(words.split(u' ', Qt::SkipEmptyParts), [&](const QString& word) {
            return name.contains(word, Qt::CaseInsensitive);
        });
    };
    const auto left = [&](auto&& self, const Vs::Component& of, const QString& words, bool in) -> Texts {
        Texts rows;
        for (const auto& child : of.children) {
            const bool found = in || has(*child, words);
            const Texts below = self(self, *child, words, found);
            if (found || !below.empty())
                rows.push_back(Vs::Strings::widen(child->id));
            rows.insert(rows.end(), below.begin(), below.end());
        }
        return rows;
    };
    const auto shown = [&](auto&& self, const QModelIndex& parent) -> Texts {
        Texts rows;
        EXPECT_EQ(tree->model()->hasChildren(parent), tree->model()->rowCount(parent) > 0);
        for (int row = 0; row < tree->model()->rowCount(parent); ++row) {
            const QModelIndex index = tree->model()->index(row, 0, parent);
            rows.push_back(index.data(Qt::UserRole).toString().toStdWString());
            const Texts below = self(self, index);
            rows.insert(rows.end(), below.begin(), below.end());
        }
        return rows;
    };
    EXPECT_GT(left(left, *asset()->components(), "bolt", false).size(), 1u);
    for (const char* words : {"b", "BOLT", "nut bolt", "as", "assembly nut", "l", "zzz", ""}) {
        filter->setText(words);
        const Texts rows = left(left, *asset()->components(), words, false);
        EXPECT_EQ(shown(shown, root()), rows) << words;
        change(); // Which the filter follows.
        EXPECT_EQ(shown(shown, root()), left(left, *asset()->components(), words, false)) << words;
    }
}

TEST_F(RowsOfTheBrowser, StayOpenAndWhereTheyAreScrolledTo)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    QApplication::processEvents();
    tree->expandAll();
    tree->resize(tree->width(), 100);
    QApplication::processEvents();
    const auto last = [&] {
        QModelIndex index = root();
        while (tree->indexBelow(index).isValid())
            index = tree->indexBelow(index);
        return index;
    };
    const std::wstring lastPath = paths().back(), first = paths().front();
    tree->verticalScrollBar()->setValue(3);
    select({lastPath});
    tree->verticalScrollBar()->setValue(3);
    answer(L"Commands.Start DeleteCommand");
    answer(L"VuCommands.UndoCmd");
    QApplication::processEvents();
    EXPECT_EQ(tree->verticalScrollBar()->value(), 3);
    EXPECT_EQ(last().data().toString().toStdWString() + L":",
              lastPath.substr(lastPath.rfind(L'/') + 1, lastPath.rfind(L':') - lastPath.rfind(L'/')));

    // A branch that comes back is expanded as it was.
    int rows = 0;
    for (QModelIndex index = root(); index.isValid(); index = tree->indexBelow(index))
        ++rows;
    select({first});
    answer(L"Commands.Start DeleteCommand");
    answer(L"VuCommands.UndoCmd");
    for (QModelIndex index = root(); index.isValid(); index = tree->indexBelow(index))
        --rows;
    EXPECT_EQ(rows, 0);
}

} // namespace
