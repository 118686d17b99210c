#include "Server/AddInMgr/AddInMgr.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Server/Base/XMLUtility.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>

namespace {

namespace fs = boost::filesystem;

std::string manifest(const std::string& identifier, const std::string& library,
                     const std::string& order = "100", const std::string& required = "")
{
    return "<?xml version=\"1.0\"?>\n<AddIn identifier=\"" + identifier + "\" loadOrder=\"" + order +
           "\">\n  <Title>" + identifier + "</Title>\n" +
           (required.empty() ? "" : "  <Requires>" + required + "</Requires>\n") + "  <Library>" + library +
           "</Library>\n</AddIn>\n";
}

class AddInMgrTest : public testing::Test
{
protected:
    AddInMgrTest()
    {
        fs::create_symlink(fs::path(QUILLET_TEST_ROOT) / "lib", root.path() / "lib");
        fs::create_directories(root.path() / "Server");
        fs::create_symlink(fs::path(QUILLET_TEST_ROOT) / "Server/AddInMgr", root.path() / "Server/AddInMgr");
    }
    ~AddInMgrTest() override { manager->unloadAddIns(); }

    fs::path write(const std::string& folder, const std::string& content)
    {
        const fs::path place = fs::path("UI") / folder / "Configuration";
        fs::create_directories(root.path() / place);
        return root.write((place / (folder + ".xml")).string(), content);
    }
    std::wstring load()
    {
        Vs::Status status;
        manager->loadAddIns(root.path(), status);
        return status.toString();
    }

    TestSupport::ScratchFolder root;
    std::wstring log;
    const Vs::WarningHandler handler{[this](const std::wstring& text) { log += text + L';'; }};
    Vs::AddInMgr* manager = Vs::AddInMgr::get();
};

TEST_F(AddInMgrTest, LoadsInOrderAndUnloadsInReverseInTwoSteps)
{
    write("A", manifest("Late", "ProbeAddInSecond", "20", "Early"));
    write("B", manifest("Early", "ProbeAddInFirst", "10"));
    EXPECT_EQ(load(), L"");
    ASSERT_EQ(manager->addIns().size(), 2u);
    EXPECT_EQ(manager->addIns()[0].manifest.identifier, "Early");
    EXPECT_EQ(manager->addIns()[1].object->toString(), L"Second");
    EXPECT_EQ(log, L"First load;Second load;");

    log.clear();
    manager->unloadAddIns();
    // One that fails to unload doesn't keep the others from it.
    const std::wstring stuck = L"The add-in \"Late\" failed to unload: stuck;";
    EXPECT_EQ(log, L"Second unload false;" + stuck + L"First unload false;Second unload true;" + stuck +
                       L"First unload true;");
    EXPECT_TRUE(manager->addIns().empty());
}

TEST_F(AddInMgrTest, GivesOneMessageForEachAddInThatCannotBeLoadedAndLoadsTheOthers)
{
    write("Good", manifest("Good", "ProbeAddInFirst"));
    struct Row
    {
        const char* folder;
        std::string content;
        const wchar_t* cause;
    };
    const Row rows[] = {
        {"Broken", "<AddIn>\n<Title>x</AddIn>", L"Broken.xml:2: "},
        {"Empty", "", L"Empty.xml"},
        {"Invalid", manifest("Invalid", "ProbeAddInFirst", "soon"), L"Invalid.xml:2: "},
        {"Outside", manifest("Outside", "../../tmp/evil"), L"Outside.xml:4: "},
        {"NoLibrary", manifest("NoLibrary", "NoSuchLibrary"), L"libNoSuchLibrary.so: cannot open"},
        {"NoExport", manifest("NoExport", "ProbeAddInSilent"), L"does not export GetIAddIn"},
        {"Failing", manifest("Failing", "ProbeAddInFailing"), L"\"Failing\" is not loaded: no licence"},
        {"Lonely", manifest("Lonely", "ProbeAddInSecond", "100", "Nobody"),
         L"it needs the add-in \"Nobody\""},
        {"Twin", manifest("Good", "ProbeAddInSecond"), L"there is one of that identifier already"},
    };
    for (const Row& row : rows)
        write(row.folder, row.content);
    const std::wstring errors = load();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), L'\n'), std::size(rows) - 1);
    for (const Row& row : rows) {
        EXPECT_NE(errors.find(row.cause), std::wstring::npos) << row.folder << '\n'
                                                              << Vs::Strings::narrow(errors);
        EXPECT_NE(errors.find(L"/UI/" + Vs::Strings::widen(row.folder)), std::wstring::npos) << row.folder;
    }
    ASSERT_EQ(manager->addIns().size(), 1u);
    EXPECT_EQ(manager->addIns()[0].manifest.identifier, "Good");
}

TEST_F(AddInMgrTest, SaysSoWhenThereIsNoManifestOrNoSchema)
{
    EXPECT_NE(load().find(L"There are no add-ins"), std::wstring::npos);
    write("Good", manifest("Good", "ProbeAddInFirst"));
    fs::remove(root.path() / "Server/AddInMgr");
    EXPECT_NE(load().find(L"AddinSchema.xsd: There is no such file."), std::wstring::npos);
    EXPECT_TRUE(manager->addIns().empty());
}

TEST_F(AddInMgrTest, AcceptsTheManifestsThatTheProgramShips)
{
    for (const char* file :
         {"UI/Commands/Configuration/VuCommands10.xml", "UI/Design/Configuration/VuDesign10.xml"}) {
        Vs::Status status;
        const auto read = Vs::AddInMgr::readManifest(root.path(), fs::path(QUILLET_SOURCES) / file, status);
        ASSERT_NE(read, nullptr) << Vs::Strings::narrow(status.toString());
        EXPECT_EQ(read->library, fs::path(file).stem().string());
    }
}

} // namespace
