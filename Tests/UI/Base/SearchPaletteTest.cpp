#include "Server/Base/StringTable.h"
#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Base/Fixture.h"
#include "Tests/UI/Base/ShownWindow.h"
#include "UI/Base/Command/CommandTitles.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Window/CommandBox.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/SearchIndex.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStringList>
#include <QTreeView>
#include <QWindow>
#include <QtTest/QTest>

#include <algorithm>

using namespace Vu;

namespace {

class PaletteArea : public Vs::TextCommandSubjectArea
{
public:
    PaletteArea() : TextCommandSubjectArea(L"PaletteTest", L"Lines for the tests of the search", false) {}
    Vs::PythonModuleInit pythonEntry() override { return nullptr; }
};

class PaletteLine : public Vs::TextCommand
{
public:
    PaletteLine() : TextCommand(L"PaletteTest", L"Weigh", L"<part> Tells the mass.", "%s", false, true) {}
    Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override { return {0, {}}; }
    Vs::PythonFunction pythonEntry() override { return nullptr; }
};

class PaletteWrapper : public TranscriptedCommandTextCommand
{
public:
    PaletteWrapper()
        : TranscriptedCommandTextCommand(L"PaletteTest", L"StoreElsewhere", L"<file> Stores a duplicate.",
                                         "%s", false, L"PaletteSaveCommand")
    {
    }
    Vs::PythonFunction pythonEntry() override { return nullptr; }
};

/// Its title has a translation.
class SaveDef : private InfoHolder, public CommandDefinition
{
public:
    SaveDef()
        : InfoHolder{Info(
              L"PaletteSaveCommand",
              CommandTitles::localized(L"PaletteSaveCommand", L"VuBase", "FileDialogSaveAs", "Save As"),
              nullptr, ToolTipInfo(L"Quince marmalade"), "Ctrl+Alt+F9",
              HotKeyBinding::EHotKeyMode::Standard)},
          CommandDefinition(&record)
    {
    }

private:
    CommandBase* onCreateCommand(CommandContext*) override { return nullptr; }
};

class ListDef : private InfoHolder, public CommandDefinition
{
public:
    ListDef() : InfoHolder{Info(L"PaletteList", L"PaletteList", nullptr)}, CommandDefinition(&record)
    {
        m_list.items({&m_entry});
    }

private:
    CommandBase* onCreateCommand(CommandContext*) override { return nullptr; }
    InputControl* onInputControl() override { return &m_list; }
    Info m_entry{L"PaletteEntry", L"Entry", nullptr};
    ListControl m_list{&record, nullptr};
};

SearchEntry entry(const char* title, const QStringList& otherNames = {}, const QStringList& texts = {})
{
    SearchEntry entry;
    entry.title = QString::fromUtf8(title);
    entry.names.emplace_back(entry.title);
    for (const QString& name : otherNames)
        entry.names.emplace_back(name);
    for (const QString& text : texts)
        entry.texts.emplace_back(text);
    return entry;
}

std::vector<std::string> titles(const SearchIndex& index, const QString& words)
{
    std::vector<std::string> titles;
    for (const SearchEntry* found : index.find(words))
        titles.push_back(found->title.toStdString());
    return titles;
}

using Titles = std::vector<std::string>;

class SearchPaletteTest : public UiTest
{
protected:
    SearchPaletteTest() { Application::get()->needGui(); }

    PaletteArea area;
    PaletteLine line;
    PaletteWrapper wrapper;
    SaveDef save;
};

} // namespace

TEST_F(SearchPaletteTest, LettersAreFoundInTheirOrderWhateverTheirCaseAndAccents)
{
    const SearchIndex index({entry("Fillet"), entry("Löschen"), entry("Undo")});
    EXPECT_EQ(titles(index, "FLT"), Titles{"Fillet"});
    EXPECT_EQ(titles(index, "tlf"), Titles{});
    for (const char* words : {"loschen", "LÖSCHEN", "  lö  "})
        EXPECT_EQ(titles(index, QString::fromUtf8(words)), Titles{"Löschen"}) << words;
    EXPECT_EQ(titles(index, " "), (Titles{"Fillet", "Löschen", "Undo"})) << "all, as they stand";
}

TEST_F(SearchPaletteTest, StartsOfWordsAndLettersInARowComeFirstAndThenTheShorterTitle)
{
    const SearchIndex words({entry("Freeze"), entry("Safe Distance"), entry("FilletEdge")});
    EXPECT_EQ(titles(words, "fe").front(), "FilletEdge");
    const SearchIndex rows({entry("Split Area in Vertical Exports"), entry("Save All"), entry("Save")});
    EXPECT_EQ(titles(rows, "save"), (Titles{"Save", "Save All", "Split Area in Vertical Exports"}));
}

TEST_F(SearchPaletteTest, EveryWordMustBeFoundAndATitleCountsMoreThanOtherNamesAndThoseMoreThanHelp)
{
    const SearchIndex index({entry("Third", {}, {"Rounds edges"}), entry("Second", {"RoundCommand"}),
                             entry("Round", {"EdgeRound"}), entry("Edge")});
    EXPECT_EQ(titles(index, "round"), (Titles{"Round", "Second", "Third"}));
    EXPECT_EQ(titles(index, "edge round"), (Titles{"Round", "Third"}));
    EXPECT_EQ(titles(index, "rds"), Titles{}) << "in sentences, only pieces are found";
    const SearchIndex weak({entry("Model.Digest"), entry("Fillet", {}, {"Rounds an edge"})});
    EXPECT_EQ(titles(weak, "edge").front(), "Fillet") << "a whole word of the help before scattered letters";
}

TEST_F(SearchPaletteTest, EndlessTextsAreSearchedFromTheirBeginning)
{
    const std::string endless(10000, 'a');
    const SearchIndex index({entry(endless.c_str()), entry("")});
    EXPECT_EQ(titles(index, "aaa"), Titles{endless});
    EXPECT_EQ(titles(index, QString(10000, 'a')), Titles{endless});
    EXPECT_EQ(titles(index, QString(10000, 'b')), Titles{});
}

TEST_F(SearchPaletteTest, ACommandIsFoundByAllThatItIsCalledInEitherLanguage)
{
    ASSERT_TRUE(std::ranges::count(Vs::StringTable::languages(), "de"));
    const std::string language = Vs::StringTable::language();
    const SearchIndex index = SearchIndex::ofProgram({});
    EXPECT_EQ(Vs::StringTable::language(), language);
    for (const char* words : {"save as", "speichern unt", "palettesavecommand", "palettetest.store",
                              "ctrl+alt+f9", "quince marm", "stores dupl"}) {
        const auto found = index.find(QString::fromLatin1(words));
        ASSERT_FALSE(found.empty()) << words;
        EXPECT_EQ(found.front()->command, L"PaletteSaveCommand") << words;
    }
    const SearchEntry& first = *index.find("palettesave").front();
    EXPECT_EQ(first.line.toStdString(), "PaletteTest.StoreElsewhere");
    EXPECT_EQ(first.keys.toStdString(), "Ctrl+Alt+F9");
}

TEST_F(SearchPaletteTest, LinesOfTheirOwnAreFoundWithWhatTheyNeedAndSoAreThoseThatWereRun)
{
    const SearchIndex index =
        SearchIndex::ofProgram({L"PaletteTest.Weigh older", L"PaletteTest.Weigh newer"});
    EXPECT_EQ(index.entries().front().fillIn.toStdString(), "PaletteTest.Weigh newer");
    const auto found = index.find("palettetest.weigh");
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found.front()->line.toStdString(), "PaletteTest.Weigh <part>");
    EXPECT_EQ(found.front()->fillIn.toStdString(), "PaletteTest.Weigh ");
    EXPECT_EQ(index.find("weigh older").front()->fillIn.toStdString(), "PaletteTest.Weigh older");
}

TEST_F(SearchPaletteTest, TheKeyboardAloneFindsAndStartsCommandsAndFillsInLines)
{
    UIBaseOptionGroup::get()->commandHistory({});
    int runs = 0;
    FunctionCommandDef jump(L"PaletteJump", [&](CommandContext&) { ++runs; });
    FunctionCommandDef sleep(L"PaletteSleep", [](CommandContext&) {});
    sleep.applicable = false;
    ListDef list;
    WorkspaceWindow* owner = UiTests::windowWith({"TextCommands"});
    MainWindow* window = owner->mainWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window->windowHandle(), key, modifiers);
    };
    const auto palette = [&] {
        return window->findChild<QWidget*>("searchPalette", Qt::FindDirectChildrenOnly);
    };
    const auto search = [&](const char* words) {
        owner->toggleSearch();
        for (const char* letter = words; *letter; ++letter)
            QTest::keyClick(window->windowHandle(), *letter);
    };
    const auto firstRow = [&] {
        const QAbstractItemModel* rows = palette()->findChild<QTreeView*>()->model();
        std::string row;
        for (int column = 0; column < rows->columnCount(); ++column)
            row += rows->index(0, column).data().toString().toStdString() + '|';
        return row;
    };
    QLineEdit* commandLine = window->commandBox()->edit();
    commandLine->setFocus();

    search("palsave");
    EXPECT_EQ(firstRow(), "Save As|PaletteTest.StoreElsewhere|Ctrl+Alt+F9|");
    press(Qt::Key_Escape);
    EXPECT_EQ(palette(), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), commandLine);

    search("palettejump");
    press(Qt::Key_Tab);
    EXPECT_EQ(firstRow(), "PaletteJump|Commands.Start PaletteJump||");
    press(Qt::Key_Return);
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(palette(), nullptr);

    search("palettesleep");
    EXPECT_EQ(firstRow(), "PaletteSleep (can't start now)|Commands.Start PaletteSleep||");
    press(Qt::Key_Return);
    ASSERT_NE(palette(), nullptr);
    EXPECT_EQ(palette()->findChild<QLabel*>("searchNote")->text().toStdString(),
              "\"PaletteSleep\" can't start now.");
    owner->toggleSearch();
    EXPECT_EQ(palette(), nullptr) << "who asks for it again closes it";

    search("palettelist");
    press(Qt::Key_Return);
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr) << "though no toolbar has it";
    EXPECT_EQ(menu->actions().value(0)->text().remove('&').toStdString(), "Entry");
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);

    search("palettetest.");
    QStringList found;
    const auto* rows = palette()->findChild<QTreeView*>()->model();
    for (int row = 0; row < rows->rowCount(); ++row)
        found << rows->index(row, 0).data().toString();
    for (qsizetype i = found.indexOf("PaletteTest.Weigh"); i > 0; --i)
        press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(commandLine->text().toStdString(), "PaletteTest.Weigh ");
    EXPECT_EQ(QApplication::focusWidget(), commandLine);
    WorkspaceMgr::get()->closeAll();
}
