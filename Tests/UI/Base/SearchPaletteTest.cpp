#include "Server/Base/StringTable.h"
#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Command/CommandTitles.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/SearchIndex.h"

#include <QStringList>

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
