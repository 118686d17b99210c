// What assistive technology sees of the real program's window, queried over its own bus.

#include "Tests/Support/Servers/ItemService.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/UI/Application/SpokenProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <regex>
#include <set>

using TestSupport::TestServer;
using UiTests::SpokenProgram;
using UiTests::SpokenThing;

namespace {

class Qt : public testing::Environment
{
public:
    void SetUp() override
    {
        static int count = 1;
        static char name[] = "test_accessibility";
        static char* arguments[] = {name, nullptr};
        static QCoreApplication application(count, arguments);
    }
};

const auto* const theQt = testing::AddGlobalTestEnvironment(new Qt);

using Thing = std::array<std::string, 2>; ///< Its role and name.

/// A state of the window, and what must be visible in it.
struct State
{
    const char* name;
    std::vector<std::string> lines;   ///< That lead to it.
    std::vector<std::string> pressed; ///< Names of the things pressed next, in order.
    std::vector<Thing> has;
};

std::ostream& operator<<(std::ostream& stream, const State& state)
{
    return stream << state.name;
}

const std::string kModel = "Design.Sample";

std::string start(const std::string& command)
{
    return "Commands.Start " + command;
}

const State kStates[] = {
    {"Home", {}, {}, {{"push button", "Open..."}, {"menu bar", ""}}},
    {"Menu", {kModel}, {"Edit"}, {{"menu item", "Find in View"}, {"menu item", "Select All"}}},
    {"Document",
     {kModel},
     {},
     {{"tree", "Browser"},
      {"tool bar", "Toolbar"},
      {"canvas", "View of the model"},
      {"graphic", "Orientation cube"},
      {"page tab", "Sample"},
      {"text", "Command Line"}}},
    {"PropertiesOfAPart", {kModel, "Selection.Select Post"}, {}, {{"text", "Name"}}},
    {"Feed", {kModel, start("ShowDesignFeedCommand")}, {}, {{"panel", "Design Feed"}}},
    {"Views", {kModel, start("SplitViewLayoutCommand") + " Layout=Quad"}, {}, {{"grip", "Divider"}}},
    {"Preferences", {start("PreferencesCommand")}, {}, {{"dialog", "Preferences"}, {"hotkey field", "Keys"}}},
    {"Palette", {kModel, start("SearchCommandsCommand")}, {}, {{"text", "Search commands, keys and lines"}}},
    {"Notifications", {kModel}, {"Notifications"}, {{"push button", "Clear"}}},
    {"About", {start("AboutBoxCommand")}, {}, {{"push button", "Copy"}}},
    {"Share", {kModel}, {"File", "Share Picture"}, {{"menu item", "E-Mail..."}}},
    {"Colours",
     {kModel, "Selection.Select Post", start("ColourCommand")},
     {"Colour: Red"},
     {{"push button", "OK"}, {"menu item", "Green"}, {"menu item", "More..."}}},
    {"DriveSignIn", {start("CloudLoginCommand")}, {}, {}},
    {"ItemsSignIn", {start("ItemhubSignInCommand")}, {}, {}},
    {"DebugDialog", {kModel, start("ShowDebugDialogCommand")}, {}, {}},
};

class AccessibilityTest : public testing::TestWithParam<State>
{
protected:
    void SetUp() override
    {
        if (!SpokenProgram::canRun())
            GTEST_SKIP() << "NOTICE: no display, or no bus for assistive programs (at-spi2-core)";
    }
};

/// Through its action, as assistive technology does.
bool press(const SpokenProgram& program, const std::string& name)
{
    const auto thing =
        program.find([&](const SpokenThing& each) { return each.name() == name && !each.actions().empty(); });
    return thing && (thing->act("Press") || thing->act("ShowMenu"));
}

/// Into the text of that name, once it exists.
void fill(const SpokenProgram& program, const std::string& name, const std::string& text)
{
    const auto field = program.find("text", name);
    ASSERT_TRUE(field) << name;
    field->type(text);
}

/// What is wrong with it; empty for nothing.
std::string faultOf(const SpokenThing& thing)
{
    static const std::set<std::string> kVague = {"filler", "unknown", "invalid", "redundant object"};
    const std::string name = thing.name(), role = thing.role();
    const std::vector<std::string> actions = thing.actions();
    const bool isUsed =
        thing.is(SpokenThing::kFocusable) ||
        std::ranges::any_of(actions, [](const std::string& each) { return each != "SetFocus"; });
    if ((name + thing.description()).find('<') != std::string::npos)
        return "has markup: " + name + " / " + thing.description();
    if (name.find('\t') != std::string::npos)
        return "has its key in its name: " + name;
    if (isUsed && name.find_first_not_of(" \t\n") == std::string::npos)
        return "has no name";
    return isUsed && kVague.contains(role) ? "has no fitting role" : "";
}

/// How many of the visible things can be used.
size_t expectNoFaults(const SpokenProgram& program)
{
    size_t used = 0;
    for (const SpokenProgram::Found& each : program.shown()) {
        EXPECT_EQ(faultOf(each.thing), "") << each.place();
        used += each.thing.is(SpokenThing::kFocusable);
    }
    return used;
}

} // namespace

TEST_P(AccessibilityTest, EverythingThatCanBeUsedHasANameAndARole)
{
    SpokenProgram program(GetParam().lines);
    ASSERT_TRUE(program.started()) << program.output();
    for (const std::string& name : GetParam().pressed)
        EXPECT_TRUE(press(program, name)) << name;
    for (const auto& [role, name] : GetParam().has)
        EXPECT_TRUE(program.find(role, name)) << role << " \"" << name << '"';
    EXPECT_GT(expectNoFaults(program), 5u);
}

TEST_F(AccessibilityTest, AButtonThatIsPressedByItsActionOpensThePanelOfItsCommand)
{
    const SpokenProgram program({kModel});
    ASSERT_TRUE(press(program, "Box"));
    EXPECT_TRUE(program.find("text", "Length"));
    expectNoFaults(program);
    ASSERT_TRUE(press(program, "OK"));
    EXPECT_TRUE(program.find("tree item", "Box1"));
}

TEST_F(AccessibilityTest, TheBrowsersContextMenuTellsItsEntries)
{
    const SpokenProgram program({kModel, "Selection.Select Post"});
    const auto post = program.find("tree item", "Post");
    ASSERT_TRUE(post);
    post->pressSecondButton();
    for (const char* entry : {"Hide", "Rename", "Delete"})
        EXPECT_TRUE(program.find("menu item", entry)) << entry;
    EXPECT_GT(expectNoFaults(program), 5u);
}

TEST_F(AccessibilityTest, TheDrivesDialogsAreToldWhereSomebodyIsSignedIn)
{
    const TestServer server(TestServer::Kind::Lighttpd);
    REQUIRE_SERVER(server);
    boost::filesystem::create_directory(server.folder() / "parts");
    boost::filesystem::ofstream(server.folder() / "wheel.vlra") << "x";
    for (const auto& [command, has] : {std::pair("CloudOpenDocumentCommand", Thing{"push button", "Open"}),
                                       std::pair("CloudSaveAsCommand", Thing{"text", "Name"})}) {
        SpokenProgram program({kModel, start(command)});
        fill(program, "Address of the server", server.address());
        ASSERT_TRUE(press(program, "Continue"));
        fill(program, "User", server.user());
        fill(program, "Password", server.password());
        const auto keep = program.find("check box", "Keep me signed in (in the keyring of this desktop)");
        ASSERT_TRUE(keep && keep->act("Toggle"));
        // The account's button in the window behind has the same name.
        const auto signIn = program.find("push button", "Sign In");
        ASSERT_TRUE(signIn && signIn->act("Press"));
        EXPECT_TRUE(program.find(has[0], has[1])) << command << program.output();
        EXPECT_TRUE(program.find("tree item", "parts")) << command;
        EXPECT_TRUE(program.find("text", "Search in this folder")) << command;
        EXPECT_GT(expectNoFaults(program), 5u) << command;
    }
}

TEST_F(AccessibilityTest, WhatIsFoundAmongTheItemsOfAServiceIsTold)
{
    TestSupport::ItemService service;
    const std::string signIn = "Dashboard.AuthenticateWithTokenCmd " + service.address() + ' ' +
                               service.token("ada", "writer") + " acme";
    const SpokenProgram program({signIn, "Dashboard.NewItemCmd 1 Wheel 0 0 VeloraAssetType"});
    fill(program, "Search items", "Whe");
    EXPECT_TRUE(program.find([](const SpokenThing& each) { return each.name().starts_with("Wheel"); }));
    EXPECT_GT(expectNoFaults(program), 5u);
}

TEST_F(AccessibilityTest, TheBrowserTellsWhatIsSelectedAndTheCubeTurnsTheModel)
{
    const SpokenProgram program({kModel, "Selection.Select Post"});
    const auto post = program.find("tree item", "Post");
    const auto table = program.find("tree item", "Table");
    ASSERT_TRUE(post && table);
    EXPECT_TRUE(post->is(SpokenThing::kSelected));
    EXPECT_FALSE(table->is(SpokenThing::kSelected));

    const auto line = program.find("text", "Command Line");
    ASSERT_TRUE(line);
    const auto run = [&](const char* text) {
        line->type(text);
        line->focus();
        program.key(QStringLiteral("Return"));
    };
    run("Selection.Select Table");
    EXPECT_TRUE(QTest::qWaitFor([&] { return table->is(SpokenThing::kSelected); }, 20000));
    EXPECT_FALSE(post->is(SpokenThing::kSelected));

    const auto cube = program.find("graphic", "Orientation cube");
    ASSERT_TRUE(cube);
    ASSERT_TRUE(cube->act("top"));
    run("Camera.Dump");
    // The camera's position and target.
    const std::regex straightDown("Camera: E([^,]*,[^,]*),\\S+ P\\1,\\S+ .*");
    EXPECT_TRUE(
        program.find([&](const SpokenThing& each) { return std::regex_match(each.name(), straightDown); }));
}

INSTANTIATE_TEST_SUITE_P(States, AccessibilityTest, testing::ValuesIn(kStates),
                         [](const auto& each) { return std::string(each.param.name); });
