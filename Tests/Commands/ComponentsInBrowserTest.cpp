#include "Tests/Commands/EditComponents.h"
#include "Tests/Commands/InBrowser.h"

#include <QLineEdit>

namespace {

using CommandsTests::Texts;

class ComponentsInTheBrowser : public CommandsTests::InBrowser<CommandsTests::EditComponents>
{
protected:
    QModelIndex item(const std::wstring& name) const { return below(tree->model()->index(1, 0), name); }
    /// The paths of what the session has selected.
    static Texts selectedPaths()
    {
        Texts texts;
        for (const auto& selection : selected().selections())
            texts.push_back(Vs::cast<Vs::LogicalSelection>(selection.get())->path().toText(*asset()));
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
            new Vs::LogicalSelection(asset(), *Vs::ObjectPath::find(*asset(), text, status), nullptr));
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

TEST_F(ComponentsInTheBrowser, TheKeyAndTheMenuDelete)
{
    click(item(L"Box1"));
    QTest::keyClick(tree, Qt::Key_Delete);
    Vu::Application::get()->flushDeferredTasks();
    EXPECT_EQ(paths(), (Texts{L"Box2:1", L"Box3:1"}));
    EXPECT_EQ(menu(item(L"Box2"), "Delete"),
              QStringList({"Cut", "Copy", "Find in Canvas", "Hide", "Delete", "Rename"}));
    EXPECT_EQ(paths(), (Texts{L"Box3:1"}));
    EXPECT_EQ(menu(tree->model()->index(1, 0), ""), QStringList());
}

} // namespace
