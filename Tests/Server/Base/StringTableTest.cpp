#include "Server/Base/StringTable.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/ResourceMgr.h"
#include "Server/Base/Warning.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <locale>

namespace {

namespace fs = boost::filesystem;
using Vs::StringTable::getLocalizedString;

class StringTableTest : public testing::Test
{
protected:
    ~StringTableTest() override { Vs::StringTable::language("en"); }
    static std::wstring save(const char* key) { return getLocalizedString(L"BaseTest", key, "Save"); }
};

TEST_F(StringTableTest, SwitchesTheLanguageWhileTheProgramRuns)
{
    EXPECT_EQ(Vs::StringTable::languages(), (std::vector<std::string>{"de", "en"}));
    EXPECT_EQ(save("SaveCommand"), L"Save");
    Vs::StringTable::language("de_DE.UTF-8");
    EXPECT_EQ(Vs::StringTable::language(), "de");
    EXPECT_EQ(save("SaveCommand"), L"Speichern");
    EXPECT_EQ(save("SizeCommand"), L"Größe sichern");
    Vs::StringTable::language("en");
    EXPECT_EQ(save("SaveCommand"), L"Save");
    Vs::StringTable::language("de");
    EXPECT_EQ(save("SaveCommand"), L"Speichern");
}

TEST_F(StringTableTest, LeavesTheLocaleAndTheEnvironmentOfTheProcessAlone)
{
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    Vs::StringTable::language("de");
    EXPECT_EQ(save("SaveCommand"), L"Speichern");
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), locale);
    EXPECT_EQ(std::locale(), std::locale::classic());
    EXPECT_EQ(std::getenv("LANGUAGE"), nullptr);
}

TEST_F(StringTableTest, GivesTheDefaultForWhateverHasNoTranslation)
{
    Vs::StringTable::language("de");
    EXPECT_EQ(save("OtherCommand"), L"Save");
    EXPECT_EQ(getLocalizedString(L"BaseTest", "SaveCommand", "Store"), L"Store");
    EXPECT_EQ(getLocalizedString(L"NoSuchDomain", "SaveCommand", "Save"), L"Save");
    EXPECT_EQ(getLocalizedString(L"BaseTest", "", ""), L"");
    for (const char* unknown : {"fr", "", "../../etc", "de/../en"}) {
        Vs::StringTable::language(unknown);
        EXPECT_EQ(Vs::StringTable::language(), "en");
    }
}

/// The good catalogue with its bytes changed, as a domain "Broken".
class BrokenCatalogueTest : public StringTableTest
{
protected:
    BrokenCatalogueTest()
    {
        fs::ifstream stream(m_folder / "BaseTest.mo", std::ios::binary);
        good.assign(std::istreambuf_iterator<char>(stream), {});
    }
    ~BrokenCatalogueTest() override { fs::remove(m_folder / "Broken.mo"); }

    void use(const std::string& content)
    {
        fs::ofstream(m_folder / "Broken.mo", std::ios::binary) << content;
        Vs::StringTable::language("de");
        warnings.clear();
    }
    static std::wstring save(const char* key) { return getLocalizedString(L"Broken", key, "Save"); }

    std::string good;
    std::vector<std::wstring> warnings;
    const Vs::WarningHandler handler{[this](const std::wstring& text) { warnings.push_back(text); }};

private:
    fs::path m_folder = Vs::PathInfo::rootDirectory() / "Localization/de/LC_MESSAGES";
};

TEST_F(BrokenCatalogueTest, WarnsOnceAndGivesTheDefaults)
{
    std::vector<std::string> broken{"", "no catalogue at all", good, good};
    broken[2][15] = 0x40; // The table of the originals is beyond the end,
    broken[3][19] = 0x40; // and that of the translations.
    for (size_t size = 1; size < good.size(); ++size)
        if (good[size - 1] != '\0' || size < 28) // Anywhere in a text, or in the header.
            broken.push_back(good.substr(0, size));
    for (const std::string& content : broken) {
        use(content);
        EXPECT_EQ(save("SaveCommand"), L"Save");
        EXPECT_EQ(save("SizeCommand"), L"Save");
        ASSERT_EQ(warnings.size(), 1u) << content.size();
        EXPECT_NE(warnings.back().find(L"Broken.mo"), std::wstring::npos);
    }
    use(good);
    EXPECT_EQ(save("SaveCommand"), L"Speichern") << "once it is mended";
    EXPECT_TRUE(warnings.empty());
}

class Catalogue : public Vs::ResourceMgr
{
public:
    Catalogue() : ResourceMgr(Vs::PathInfo::localizationDirectory(true) / "UI/Probe") {}
    using ResourceMgr::cursor;
    using ResourceMgr::image;
    using ResourceMgr::imageSet;
    using ResourceMgr::resource;
};

TEST_F(StringTableTest, ResourcesFollowTheLanguageWhereItHasAFileOfItsOwn)
{
    const fs::path folder = Vs::PathInfo::rootDirectory() / "Localization";
    for (const char* file : {"en/UI/Probe/both.txt", "en/UI/Probe/english.txt", "de/UI/Probe/both.txt"}) {
        fs::create_directories((folder / file).parent_path());
        fs::ofstream(folder / file) << file;
    }
    Catalogue catalogue;
    EXPECT_EQ(catalogue.resource(L"both.txt")->localPath(), (folder / "en/UI/Probe/both.txt").wstring());
    Vs::StringTable::language("de");
    EXPECT_EQ(Vs::PathInfo::localizationDirectory(true), folder / "de");
    EXPECT_EQ(catalogue.resource(L"both.txt")->localPath(), (folder / "de/UI/Probe/both.txt").wstring());
    EXPECT_EQ(catalogue.resource(L"english.txt")->localPath(),
              (folder / "en/UI/Probe/english.txt").wstring());
    EXPECT_EQ(catalogue.resource(L"none.txt")->localPath(), (folder / "en/UI/Probe/none.txt").wstring());
    fs::remove_all(folder / "de/UI");
    EXPECT_EQ(Vs::PathInfo::localizationDirectory(true), folder / "en");
    EXPECT_EQ(Vs::PathInfo::localizationDirectory(false), folder / "de");
}

TEST_F(StringTableTest, ResourcesAreOneObjectForOnePathAndKind)
{
    Catalogue catalogue;
    EXPECT_EQ(catalogue.imageSet(L"Icon"), catalogue.imageSet(L"Icon"));
    EXPECT_NE(catalogue.image(L"a.png"), catalogue.image(L"b.png"));
    EXPECT_EQ(catalogue.cursor(L"c.png", 1, 1)->hotX(), 1);
    EXPECT_EQ(Vs::CursorResource::defaultCursor(17), Vs::CursorResource::defaultCursor(17));
    EXPECT_EQ(Vs::CursorResource::defaultCursor(17)->shape(), 17);
    const auto file = [&](int pixels) {
        return fs::path(catalogue.imageSet(L"Icon")->fileForSize(pixels)).filename().string();
    };
    EXPECT_EQ(file(1), "16x16.png");
    EXPECT_EQ(file(17), "24x24.png");
    EXPECT_EQ(file(32), "32x32.png");
    EXPECT_EQ(file(500), "64x64.png");
}

} // namespace
