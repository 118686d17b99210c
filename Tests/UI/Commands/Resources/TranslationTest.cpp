#include "Server/Base/StringTable.h"
#include "UI/Commands/Resources.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

namespace {

struct Entry
{
    std::string key;
    std::string english;
    std::string translated;
};

std::vector<Entry> entriesOf(const std::string& file)
{
    std::ifstream stream(file);
    const std::regex row("^(msgctxt|msgid|msgstr) \"(.*)\"$");
    std::vector<Entry> entries;
    std::smatch match;
    for (std::string line; std::getline(stream, line);) {
        if (!std::regex_match(line, match, row))
            continue;
        if (match[1] == "msgctxt")
            entries.push_back({match[2], {}, {}});
        else if (!entries.empty())
            (match[1] == "msgid" ? entries.back().english : entries.back().translated) = match[2];
    }
    return entries;
}

std::vector<std::string> matchesOf(const std::string& text, const char* pattern)
{
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), expression), end; it != end; ++it)
        found.push_back(it->str());
    std::sort(found.begin(), found.end());
    return found;
}

const std::string kDataModel =
    QUILLET_SOURCES "/Server/DataModel/Configuration/Translations/de/VsDataModel.po";
const std::string kGerman[] = {kDataModel,
                               QUILLET_SOURCES "/Server/Types/Configuration/Translations/de/VsTypes.po",
                               QUILLET_SOURCES "/Server/Scene/Configuration/Translations/de/VsScene.po",
                               QUILLET_SOURCES "/UI/Base/Configuration/Translations/de/VuBase.po",
                               QUILLET_SOURCES "/UI/Commands/Configuration/Translations/de/VuCommands.po",
                               QUILLET_SOURCES "/UI/Design/Configuration/Translations/de/VuDesign.po"};

} // namespace

TEST(GermanTexts, AreCompleteAndNamedOnce)
{
    for (const std::string& file : kGerman) {
        const std::vector<Entry> entries = entriesOf(file);
        EXPECT_FALSE(entries.empty()) << file;
        std::vector<std::string> keys;
        for (const Entry& entry : entries) {
            EXPECT_FALSE(entry.translated.empty()) << entry.key;
            keys.push_back(entry.key);
        }
        std::sort(keys.begin(), keys.end());
        const auto twice = std::adjacent_find(keys.begin(), keys.end());
        EXPECT_TRUE(twice == keys.end()) << *twice;
    }
}

// A text whose placeholders differ from the program's would throw, or drop a file's name, when it is filled
// in.
TEST(GermanTexts, KeepThePlaceholdersAndTheFiltersOfFileDialogs)
{
    for (const std::string& file : kGerman) {
        for (const Entry& entry : entriesOf(file)) {
            EXPECT_EQ(matchesOf(entry.english, "%[0-9]+%"), matchesOf(entry.translated, "%[0-9]+%"))
                << entry.key;
            EXPECT_EQ(matchesOf(entry.english, "\\(\\*\\.[a-z]+\\)"),
                      matchesOf(entry.translated, "\\(\\*\\.[a-z]+\\)"))
                << entry.key;
        }
    }
}

// Workers report their steps in English, so no call in the code names a key.
TEST(GermanTexts, CoverEveryStepThatAWorkerTells)
{
    const std::vector<Entry> entries = entriesOf(kDataModel);
    size_t steps = 0;
    for (const auto& file :
         std::filesystem::recursive_directory_iterator(QUILLET_SOURCES "/Server/Translate")) {
        if (!file.is_regular_file())
            continue;
        std::ifstream stream(file.path());
        const std::string code{std::istreambuf_iterator<char>(stream), {}};
        for (const std::string& call : matchesOf(code, "reporter\\.stage\\(\"[^\"]+\"")) {
            const std::string step = call.substr(call.find('"') + 1, call.size() - call.find('"') - 2);
            ++steps;
            EXPECT_TRUE(std::any_of(entries.begin(), entries.end(),
                                    [&](const Entry& entry) { return entry.key == step; }))
                << step << " in " << file.path();
        }
    }
    EXPECT_GT(steps, 10u);
}

TEST(GermanTexts, AreShownOnceTheLanguageIsSwitchedWhileTheIconsStay)
{
    const std::wstring icon = Vu::Commands::Resources::Fit()->fileForSize(24);
    Vs::StringTable::language("de");
    EXPECT_EQ(Vs::StringTable::getLocalizedString(L"VuCommands", "CancelCommand", "Cancel"), L"Abbrechen");
    EXPECT_EQ(Vs::StringTable::getLocalizedString(L"VuDesign", "BoxCommand", "Box"), L"Quader");
    EXPECT_EQ(Vu::Commands::Resources::Fit()->fileForSize(24), icon);
    Vs::StringTable::language("en");
    EXPECT_EQ(Vs::StringTable::getLocalizedString(L"VuCommands", "CancelCommand", "Cancel"), L"Cancel");
}
