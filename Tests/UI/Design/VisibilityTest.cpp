#include "Server/DataModel/ModelDigest.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/UI/Commands/EditComponents.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"

namespace {

using CommandsTests::Texts;

class VisibilityTest : public CommandsTests::EditComponents
{
protected:
    static bool shown(const std::wstring& text)
    {
        return asset()->findComponent(path(text).component)->visible;
    }
    static BBox bounds()
    {
        return Vs::cast<Vs::Scene::SceneAssetAdapter>(asset()->adapter())->rootNode()->boundingBox();
    }
};

} // namespace

TEST_F(VisibilityTest, WhatIsSelectedIsHiddenAndShownAsStepsOfUndo)
{
    const uint64_t before = Vs::modelDigest(*asset());
    const double wide = bounds().high().x;
    const unsigned stepsBefore = steps();
    EXPECT_FALSE(applicable(L"HideCommand"));
    select({L"Box1", L"Box3"});
    EXPECT_TRUE(applicable(L"HideCommand"));
    EXPECT_FALSE(applicable(L"ShowCommand"));
    answer(L"Design.Hide");
    EXPECT_FALSE(shown(L"Box1") || shown(L"Box3"));
    EXPECT_TRUE(shown(L"Box2"));
    EXPECT_EQ(steps(), stepsBefore + 1);
    EXPECT_LT(bounds().high().x, wide) << "what is hidden isn't fitted";
    EXPECT_NE(Vs::modelDigest(*asset()), before);
    answer(L"Commands.Start ToggleVisibilityCommand");
    EXPECT_TRUE(shown(L"Box1") && shown(L"Box3"));
    EXPECT_EQ(Vs::modelDigest(*asset()), before);
    answer(L"VuCommands.UndoCmd");
    EXPECT_FALSE(shown(L"Box1"));
    answer(L"VuCommands.UndoCmd");
    EXPECT_EQ(Vs::modelDigest(*asset()), before);
}

TEST_F(VisibilityTest, LinesNameWhatTheyMeanAndSayWhatIsWrong)
{
    answer(L"Design.Hide Box1 Box2/Body1");
    EXPECT_FALSE(shown(L"Box1") || shown(L"Box2"));
    const unsigned before = steps();
    answer(L"Design.Hide Box1");
    EXPECT_EQ(steps(), before) << "it is hidden already";
    EXPECT_NE(failure(L"Design.Show Box1 Box9").find(L"Box9"), std::wstring::npos);
    EXPECT_FALSE(shown(L"Box1"));
    EXPECT_FALSE(failure(L"Design.Show").empty());
    answer(L"Design.ShowAll");
    EXPECT_TRUE(shown(L"Box1") && shown(L"Box2"));
    answer(L"Design.ShowAll");
    EXPECT_EQ(steps(), before + 1);
}

TEST_F(VisibilityTest, ItIsSavedWithTheModel)
{
    answer(L"Design.Hide Box2");
    const uint64_t before = Vs::modelDigest(*asset());
    saveAndReopen(L"hidden.vlra");
    EXPECT_FALSE(shown(L"Box2"));
    EXPECT_TRUE(shown(L"Box1"));
    EXPECT_EQ(Vs::modelDigest(*asset()), before);
    answer(L"Design.ShowAll");
    EXPECT_TRUE(shown(L"Box2"));
    EXPECT_NE(answer(L"Model.Digest").size(), 0u);
}

TEST_F(VisibilityTest, OneOccurrenceOfAPartIsHiddenAlone)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    answer(L"Design.Hide as1/rod-assembly_1/nut_1");
    EXPECT_FALSE(shown(L"as1/rod-assembly_1/nut_1"));
    EXPECT_TRUE(shown(L"as1/rod-assembly_1/nut_2"));
    // An assembly takes along what is in it, wherever it is.
    const double all = bounds().diagonal();
    answer(L"Design.Hide as1/plate_1 as1/l-bracket-assembly_1");
    EXPECT_LT(bounds().diagonal(), all);
    const uint64_t before = Vs::modelDigest(*asset());
    saveAndReopen(L"hidden-assembly.vlra");
    EXPECT_EQ(Vs::modelDigest(*asset()), before);
}

TEST_F(VisibilityTest, WhoHidesByHandIsToldHowManyOthersGoAlong)
{
    SKIP_WITHOUT_REAL_DATA();
    openAssembly();
    Vu::AlertController* alerts = Vu::CommandMgr::get()->GetAlertController();
    const auto hide = [&](const wchar_t* component) {
        alerts->clearAllAlerts();
        select({component});
        definition(L"HideCommand")->runByHand(Vu::ECommandAccessPoint::Menu);
        Vu::Application::get()->flushDeferredTasks();
        EXPECT_FALSE(shown(component));
        return alerts->alerts().empty() ? std::wstring() : alerts->alerts().front().text;
    };
    EXPECT_EQ(hide(L"as1/plate_1"), L"");
    EXPECT_EQ(hide(L"as1/l-bracket-assembly_1/nut-bolt-assembly_1/bolt_1").find(L"Hidden in 6 places"), 0u);
    alerts->clearAllAlerts();
}
