// The settings of the view: every list, the menus, and the effect of each identifier.

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SnapEvents.h"

#include <QApplication>
#include <QWidget>
#include <QtTest/QTest>

#include <algorithm>
#include <utility>

using namespace Vu;
using Vs::Scene::GraphicsOptionGroup;
using Vs::Scene::RenderParams;

namespace {

CommandDefinition* definition(const std::wstring& key)
{
    CommandDefinition* found = CommandDefinitionMgr::get()->findCommandDefinitionById(key);
    EXPECT_NE(found, nullptr) << std::string(key.begin(), key.end());
    return found;
}

/// The control as a button shows it, updated.
template <class Control>
Control* control(const std::wstring& key)
{
    CommandDefinition* found = definition(key);
    auto* made = Vs::cast<Control>(found->inputControl());
    CommandContext context = CommandContext::activeContext();
    found->updateInputControl(&context);
    return made;
}

ListControl* list(const std::wstring& key)
{
    return control<ListControl>(key);
}

MenuControl* menu(const std::wstring& key)
{
    return control<MenuControl>(key);
}

MenuItem* item(MenuControl* menu, const std::wstring& key)
{
    const auto& items = menu->items();
    const auto found = std::ranges::find(items, key, [](MenuItem* one) { return one->info()->key(); });
    return found == items.end() ? nullptr : *found;
}

/// The current item according to the button of a list; empty for none.
std::wstring current(const std::wstring& key)
{
    const Info* selected = list(key)->selectedItem();
    return selected ? selected->key() : std::wstring();
}

class ViewDisplayTest : public CommandsTests::Navigation
{
protected:
    void TearDown() override
    {
        GraphicsOptionGroup::get()->reset();
        Navigation::TearDown();
    }

    static GraphicsOptionGroup& options() { return *GraphicsOptionGroup::get(); }
    static RenderParams& render() { return *view()->modelFragment()->renderParams(); }
    static Vs::CommonData::CommonDataAssetSettings& settings()
    {
        return *Vs::cast<Vs::CommonData::CommonDataAssetSettings>(
            activeSession()->asset()->adapter()->assetSettings());
    }
    /// Any definition of the family runs any identifier.
    static void set(const std::wstring& id) { answer(L"VuCommands.ViewDomeCmd " + id); }

    static void choose(const std::wstring& key, const std::wstring& id)
    {
        ListControl* control = list(key);
        const auto found = std::ranges::find(control->items(), id, &Info::key);
        ASSERT_NE(found, control->items().end());
        control->selectedItem(*found, true);
        Application::get()->flushDeferredTasks();
    }
    static void toggle(const std::wstring& menuKey, const std::wstring& itemKey)
    {
        MenuControl* control = menu(menuKey);
        MenuItem* one = item(control, itemKey);
        ASSERT_NE(one, nullptr);
        control->selectItem(one, !one->checked(), true);
        Application::get()->flushDeferredTasks();
    }
};

constexpr const wchar_t* kLists[] = {
    L"ViewDomeCommand",         L"ViewGroundPlaneCommand",      L"ViewGroundReflectionCommand",
    L"ViewNPREffectCommand",    L"ViewAmbientOcclusionCommand", L"ViewEnvCommand",
    L"ViewMSAACommand",         L"ViewSelectionEffectCommand",  L"ViewVisualStyleCommand",
    L"ViewObjectShadowCommand", L"ViewColorCyclingCommand",     L"ViewCameraCommand",
    L"ViewLayoutGridOnCommand", L"ViewGridRefNumeralsCommand",  L"ViewAxisCrossCommand",
    L"ViewScaleBarCommand"};

} // namespace

TEST_F(ViewDisplayTest, WhatIsChosenInAListIsWhatTheListThenShows)
{
    for (const wchar_t* key : kLists) {
        const std::vector<Info*> items = list(key)->items();
        EXPECT_GE(items.size(), 2u);
        // Backwards as well: each item is chosen once while it is current and once while another one is.
        for (size_t i = 0; i < 2 * items.size(); ++i) {
            const std::wstring& id = items[i < items.size() ? i : 2 * items.size() - 1 - i]->key();
            SCOPED_TRACE(std::string(id.begin(), id.end()));
            choose(key, id);
            EXPECT_EQ(current(key), id == L"ViewSkyRoomCommand" ? L"" : id);
        }
    }
}

TEST_F(ViewDisplayTest, EachIdentifierSetsItsNumberInThePictureAndAmongTheOptions)
{
    struct Case
    {
        const wchar_t* id;
        int (RenderParams::*render)() const;
        Vs::Option<int> GraphicsOptionGroup::*option;
        int value;
    };
    const Case cases[] = {
        {L"ViewNPRGraphiteCommand", &RenderParams::nprEffect, &GraphicsOptionGroup::NPREffect, 3},
        {L"ViewNPRPastelCommand", &RenderParams::nprEffect, &GraphicsOptionGroup::NPREffect, 1},
        {L"ViewNPROffCommand", &RenderParams::nprEffect, &GraphicsOptionGroup::NPREffect, 0},
        {L"ViewVisualStyleRealistic", &RenderParams::visualStyle, &GraphicsOptionGroup::visualStyle, 6},
        {L"ViewVisualStyleShaded", &RenderParams::visualStyle, &GraphicsOptionGroup::visualStyle, 0},
        {L"ViewVisualStyleWireframeHL", &RenderParams::visualStyle, &GraphicsOptionGroup::visualStyle, 4},
        {L"ViewObjectShadowSharpCommand", &RenderParams::objectShadowType,
         &GraphicsOptionGroup::objectShadowType, 1},
        {L"ViewObjectShadowSoftCommand", &RenderParams::objectShadowType,
         &GraphicsOptionGroup::objectShadowType, 2},
        {L"ViewObjectShadowSoft2Command", &RenderParams::objectShadowType,
         &GraphicsOptionGroup::objectShadowType, 3},
        {L"ViewObjectShadowNoneCommand", &RenderParams::objectShadowType,
         &GraphicsOptionGroup::objectShadowType, 0},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(std::string(one.id, one.id + std::wcslen(one.id)));
        set(one.id);
        EXPECT_EQ((render().*one.render)(), one.value);
        EXPECT_EQ((options().*one.option)(), one.value);
    }
    options().reset();
    EXPECT_FALSE(options().objectShadowIsChosen());
    set(L"ViewObjectShadowNoneCommand");
    EXPECT_TRUE(options().objectShadowIsChosen()) << "no shadows are a choice, too";
    set(L"ViewSelectionEffectFastCommand");
    EXPECT_EQ(options().selectionEffectOption(), 2);
    set(L"ViewSelectionEffectSimplifiedCommand");
    EXPECT_EQ(options().selectionEffectOption(), 3);
    set(L"ViewSkyRoomCommand");
    EXPECT_EQ(Vs::Scene::EnvironmentManager::getEnvManager()->activeEnvironmentID(), L"SkyRoomPool");
}

TEST_F(ViewDisplayTest, SwitchesSetThePictureAndTheOptionsAlike)
{
    for (const bool on : {true, false, true}) {
        const std::wstring end = on ? L"OnCommand" : L"OffCommand";
        set(L"ViewGroundPlane" + end);
        set(L"ViewGroundShadow" + end);
        set(L"ViewGroundReflection" + end);
        set(L"ViewAmbientOcclusion" + end);
        EXPECT_EQ(render().groundPlaneEnabled(), on);
        EXPECT_EQ(render().groundShadowEnabled(), on);
        EXPECT_EQ(render().groundReflectionEnabled(), on);
        EXPECT_EQ(render().ambientOcclusionEnabled(), on);
        EXPECT_EQ(options().displayGroundPlane(), on);
        EXPECT_EQ(options().groundShadowEnabled(), on);
        EXPECT_EQ(options().groundReflectionEnabled(), on);
        EXPECT_EQ(options().ambientOccludedEnabled(), on);
    }
}

TEST_F(ViewDisplayTest, TheListOfTheGroundShadowSwitchesTheReflection)
{
    set(L"ViewGroundShadowOnCommand");
    set(L"ViewGroundReflectionOnCommand");
    ListControl* shadow = list(L"ViewGroundShadowCommand");
    ASSERT_EQ(shadow->items().size(), 2u);
    shadow->selectedItem(shadow->items()[1], true);
    EXPECT_TRUE(options().groundShadowEnabled());
    EXPECT_FALSE(options().groundReflectionEnabled());
    // It still shows the shadow.
    EXPECT_EQ(list(L"ViewGroundShadowCommand")->selectedItem(), shadow->items()[0]);
    toggle(L"ViewEffectCommand", L"ViewGroundShadowCommand");
    EXPECT_FALSE(options().groundShadowEnabled());
    EXPECT_FALSE(render().groundShadowEnabled());
}

TEST_F(ViewDisplayTest, ValuesWithoutAnItemShowAsNothingAndEveryKindOfShadowAsOn)
{
    for (int type = 1; type <= 3; ++type) {
        render().objectShadowType(type);
        EXPECT_EQ(current(L"ViewObjectShadowCommand"), L"ViewObjectShadowSoft2Command");
    }
    render().objectShadowType(4);
    render().nprEffect(2);
    render().visualStyle(7);
    options().selectionEffectOption(0);
    for (const wchar_t* key : {L"ViewObjectShadowCommand", L"ViewNPREffectCommand", L"ViewVisualStyleCommand",
                               L"ViewSelectionEffectCommand"})
        EXPECT_EQ(current(key), L"");
}

TEST_F(ViewDisplayTest, ColourCyclingBelongsToThePictureAlone)
{
    class Count : public Vs::OptionEventSite
    {
    public:
        void optionChanged(Vs::OptionEvent*) override { ++changes; }
        int changes = 0;
    } count;
    options().subscribe(&count);
    set(L"ViewColorCyclingOnCommand");
    options().unsubscribe(&count);
    EXPECT_TRUE(render().colorCyclingEnabled());
    EXPECT_EQ(count.changes, 0);
}

TEST_F(ViewDisplayTest, OnlyTheGridsNumbersAreToldToTheOneWhoSnaps)
{
    class Site : public Inference::SnapEventSite
    {
    public:
        Site() { Inference::SnapEventSource::get()->subscribe(this); }
        ~Site() override { Inference::SnapEventSource::get()->unsubscribe(this); }
        void gridNumbersToggled(Inference::SnapEvent* event) override { assets.push_back(event->asset()); }
        std::vector<Vs::Asset*> assets;
    } site;
    set(L"ViewLayoutGridOnCommand");
    EXPECT_TRUE(options().showLayoutGrid());
    EXPECT_TRUE(site.assets.empty());
    set(L"ViewGridNumeralsOnCommand");
    set(L"ViewGridNumeralsOffCommand");
    EXPECT_EQ(site.assets, std::vector<Vs::Asset*>(2, activeSession()->asset()));
}

TEST_F(ViewDisplayTest, AnIdentifierThatNobodyKnowsChangesNothing)
{
    const uint64_t before = render().revision();
    for (const wchar_t* line :
         {L"VuCommands.ViewVisualStyleCmd Shaded", L"VuCommands.ViewVisualStyleCmd",
          L"VuCommands.ViewVisualStyleCmd \"\"", L"Commands.Start ViewVisualStyleCommand CmdId=viewshaded"})
        answer(line);
    EXPECT_EQ(render().revision(), before);
}

TEST_F(ViewDisplayTest, EachLineOfTheFamilyTakesTheIdentifierAsItsFirstParameter)
{
    int style = 0;
    for (const wchar_t* name :
         {L"Dome", L"GroundPlane", L"GroundShadow", L"AmbientOcclusion", L"GroundReflection", L"NPREffect",
          L"Environment", L"MSAA", L"SelectionEffect", L"VisualStyle", L"Camera", L"ObjectShadow",
          L"ColorCycling", L"LayoutGridOn", L"AxisCross", L"ScaleBar"}) {
        style = style == 3 ? 0 : 3;
        answer(L"VuCommands.View" + std::wstring(name) + L"Cmd " +
               (style == 3 ? L"ViewVisualStyleWireframe" : L"ViewVisualStyleShaded") + L" Ignored");
        EXPECT_EQ(render().visualStyle(), style) << std::string(name, name + std::wcslen(name));
    }
    answer(L"VuCommands.ViewWidgetCmd");
}

TEST_F(ViewDisplayTest, AViewCommandLeavesTheToolThatIsAtWork)
{
    start(L"PanCommand");
    const CommandBase* tool = activeCommand();
    ASSERT_NE(tool, nullptr);
    set(L"ViewVisualStyleWireframe");
    EXPECT_EQ(activeCommand(), tool);
}

TEST_F(ViewDisplayTest, TheEffectsAreChecksThatRunTheirOwnDefinitions)
{
    const wchar_t* const kItems[] = {L"ViewDomeCommand",         L"ViewGroundPlaneCommand",
                                     L"ViewGroundShadowCommand", L"ViewGroundReflectionCommand",
                                     L"ViewObjectShadowCommand", L"ViewAmbientOcclusionCommand",
                                     L"ViewMSAACommand"};
    ASSERT_EQ(menu(L"ViewEffectCommand")->items().size(), std::size(kItems));
    for (size_t i = 0; i < std::size(kItems); ++i)
        EXPECT_EQ(menu(L"ViewEffectCommand")->items()[i]->info()->key(), kItems[i]);
    const auto states = [] {
        GraphicsOptionGroup& o = options();
        return std::vector<bool>{o.displayDome(),
                                 o.displayGroundPlane(),
                                 o.groundShadowEnabled(),
                                 o.groundReflectionEnabled(),
                                 o.objectShadowType() != 0,
                                 o.ambientOccludedEnabled(),
                                 o.MSAA()};
    };
    // Each item changes its own setting and no other, and back.
    for (size_t i = 0; i < 2 * std::size(kItems); ++i) {
        std::vector<bool> wanted = states();
        wanted[i / 2].flip();
        toggle(L"ViewEffectCommand", kItems[i / 2]);
        EXPECT_EQ(states(), wanted);
        std::vector<bool> shown;
        for (const MenuItem* one : menu(L"ViewEffectCommand")->items())
            shown.push_back(one->checked());
        EXPECT_EQ(shown, wanted);
    }
    set(L"ViewObjectShadowNoneCommand");
    toggle(L"ViewEffectCommand", L"ViewObjectShadowCommand");
    EXPECT_EQ(options().objectShadowType(), 3);
}

TEST_F(ViewDisplayTest, WithoutAGroundItsShadowAndReflectionCannotBeChosenButStayChecked)
{
    set(L"ViewGroundPlaneOnCommand");
    set(L"ViewGroundReflectionOnCommand");
    set(L"ViewGroundShadowOnCommand");
    MenuControl* effects = menu(L"ViewEffectCommand");
    MenuItem* shadow = item(effects, L"ViewGroundShadowCommand");
    MenuItem* reflection = item(effects, L"ViewGroundReflectionCommand");
    EXPECT_TRUE(shadow->enabled() && reflection->enabled());
    // The very items of the open menu: it isn't refilled for this.
    effects->selectItem(item(effects, L"ViewGroundPlaneCommand"), false, true);
    EXPECT_FALSE(shadow->enabled() || reflection->enabled());
    EXPECT_TRUE(shadow->checked() && reflection->checked());
    // A change from elsewhere appears at the next update.
    set(L"ViewGroundPlaneOnCommand");
    effects = menu(L"ViewEffectCommand");
    EXPECT_TRUE(item(effects, L"ViewGroundShadowCommand")->enabled());
    EXPECT_TRUE(item(effects, L"ViewGroundPlaneCommand")->checked());
}

TEST_F(ViewDisplayTest, TheGridHasAMenuOfItsOwn)
{
    ASSERT_EQ(menu(L"ViewLayoutGridCommand")->items().size(), 2u);
    toggle(L"ViewLayoutGridCommand", L"ViewLayoutGridOnCommand");
    EXPECT_TRUE(options().showLayoutGrid());
    EXPECT_FALSE(options().showGridRefNumbers());
    toggle(L"ViewLayoutGridCommand", L"ViewGridRefNumeralsCommand");
    EXPECT_TRUE(options().showGridRefNumbers());
    set(L"ViewLayoutGridOffCommand");
    EXPECT_FALSE(item(menu(L"ViewLayoutGridCommand"), L"ViewLayoutGridOnCommand")->checked());
}

TEST_F(ViewDisplayTest, APerspectiveWithOrthoFacesIsParallelStraightBeforeASide)
{
    camera()->look({0.3, 1, -0.4}, {0, 0, 1});
    set(L"ViewCameraOrthoCommand");
    EXPECT_EQ(camera()->projection(), Vs::Scene::kParallelProjection);
    EXPECT_EQ(options().cameraProjection(), 1);
    set(L"ViewCameraPerspWithOrthoFacesCommand");
    EXPECT_EQ(options().cameraProjection(), 2);
    EXPECT_TRUE(settings().perspWithOrthoFaces() && options().cameraPerspWithOrthoFaces());
    EXPECT_EQ(camera()->projection(), Vs::Scene::kPerspectiveProjection);
    // Whatever moves the camera, it follows at the end of the event.
    camera()->look({0, 0, -1}, {0, 1, 0});
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(camera()->projection(), Vs::Scene::kParallelProjection);
    camera()->orbit(3, 0);
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(camera()->projection(), Vs::Scene::kPerspectiveProjection);
    // The command itself checks, too.
    set(L"ViewCameraPerspCommand");
    EXPECT_FALSE(settings().perspWithOrthoFaces() || options().cameraPerspWithOrthoFaces());
    camera()->look({0, 1, 0}, {0, 0, 1});
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(camera()->projection(), Vs::Scene::kPerspectiveProjection);
    set(L"ViewCameraPerspWithOrthoFacesCommand");
    EXPECT_EQ(camera()->projection(), Vs::Scene::kParallelProjection);
    EXPECT_EQ(current(L"ViewCameraCommand"), L"ViewCameraPerspWithOrthoFacesCommand");
}

TEST_F(ViewDisplayTest, TheWindowIsDrawnAnewAtEachChangeAndNeverOtherwise)
{
    class Paints : public QObject
    {
    public:
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::Paint;
            return false;
        }
        int taken()
        {
            QApplication::processEvents();
            return std::exchange(count, 0);
        }
        int count = 0;
    } paints;
    Application::get()->needGui();
    QWidget window;
    QWidget* widget = canvas()->widget(&window);
    window.resize(400, 300);
    widget->setGeometry(0, 0, 400, 300);
    widget->installEventFilter(&paints);
    window.show();
    EXPECT_GT(paints.taken(), 0);
    for (const wchar_t* id :
         {L"ViewDomeOffCommand", L"ViewGroundPlaneOnCommand", L"ViewNPRPastelCommand", L"ViewMSAAOffCommand",
          L"ViewEnvDarkSkyCommand", L"ViewVisualStyleWireframe", L"ViewCameraOrthoCommand",
          L"ViewColorCyclingOnCommand", L"ViewLayoutGridOnCommand", L"ViewAxisCrossOnCommand"}) {
        SCOPED_TRACE(std::string(id, id + std::wcslen(id)));
        set(id);
        EXPECT_GT(paints.taken(), 0);
    }
    answer(L"VuCommands.HideOrbiconCmd");
    EXPECT_GT(paints.taken(), 0);
    answer(L"VuCommands.ShowOrbiconCmd");
    EXPECT_GT(paints.taken(), 0);
    // A camera that has moved gets one more picture once it stands still.
    QTest::qWait(400);
    // What the pointer had highlighted goes out at its first move.
    QTest::mouseMove(widget, {20, 10});
    paints.taken();
    answer(L"VuCommands.ViewDomeCmd Nonsense");
    // Beside the model, where nothing is highlighted.
    QTest::mouseMove(widget, {10, 10});
    QTest::mouseMove(widget, {30, 10});
    EXPECT_EQ(paints.taken(), 0);
    delete widget;
}

TEST_F(ViewDisplayTest, WhoDrawsTheListsHearsOfEachChange)
{
    class Site : public CommandEventSite
    {
    public:
        Site() { CommandEventSource::get()->subscribe(this); }
        ~Site() override { CommandEventSource::get()->unsubscribe(this); }
        void commandAvailabilitiesChanged(Vs::Event*) override { ++told; }
        int told = 0;
    } site;
    set(L"ViewVisualStyleWireframe");
    EXPECT_EQ(std::exchange(site.told, 0), 1);
    answer(L"VuCommands.HideOrbiconCmd");
    EXPECT_EQ(std::exchange(site.told, 0), 1);
    answer(L"VuCommands.ShowOrbiconCmd");
    EXPECT_EQ(site.told, 1);
}

TEST_F(ViewDisplayTest, AViewThatIsOpenedLaterHasWhatWasChosenLast)
{
    set(L"ViewVisualStyleWireframe");
    set(L"ViewCameraOrthoCommand");
    answer(L"Design.New");
    EXPECT_EQ(render().visualStyle(), Vs::Scene::kWireframe);
    EXPECT_EQ(camera()->projection(), Vs::Scene::kParallelProjection);
}

TEST_F(ViewDisplayTest, WithNothingOpenTheOptionsAreSetAndTheMenusRest)
{
    answerBoxes(1);
    answer(L"Document.CloseAll");
    ASSERT_EQ(documents(), 0u);
    set(L"ViewVisualStyleWireframe");
    set(L"ViewColorCyclingOnCommand");
    set(L"ViewCameraPerspWithOrthoFacesCommand");
    set(L"ViewGridNumeralsOnCommand");
    EXPECT_EQ(options().visualStyle(), 3);
    CommandContext context = CommandContext::activeContext();
    for (const wchar_t* key : {L"ViewEffectCommand", L"ViewLayoutGridCommand"})
        EXPECT_FALSE(definition(key)->isApplicable(&context));
    const bool dome = options().displayDome();
    toggle(L"ViewEffectCommand", L"ViewDomeCommand");
    EXPECT_EQ(options().displayDome(), dome);
}
