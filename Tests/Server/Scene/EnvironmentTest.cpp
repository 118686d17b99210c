#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using Vs::Scene::Environment;
using Vs::Scene::EnvironmentManager;
using Vs::Scene::GraphicsOptionGroup;

class Environments : public testing::Test
{
protected:
    ~Environments() override { manager.activeEnvironmentID(before); }
    EnvironmentManager& manager = *EnvironmentManager::getEnvManager();
    const std::wstring before = manager.activeEnvironmentID();
};

TEST_F(Environments, EveryIdIsKeptAsItWasSetAndUnknownOnesLookLikeTheFirstChoice)
{
    for (const wchar_t* id :
         {L"DarkSky", L"GreyRoom", L"PhotoBooth", L"TranquilityBlue", L"InfinityPool", L"SkyRoom"}) {
        manager.activeEnvironmentID(id);
        EXPECT_EQ(manager.activeEnvironmentID(), id);
        EXPECT_EQ(manager.activeEnvironment().id, id);
    }
    manager.activeEnvironmentID(L"SkyRoomPool");
    EXPECT_EQ(manager.activeEnvironmentID(), L"SkyRoomPool");
    EXPECT_EQ(&manager.activeEnvironment(), &manager.environment(L"SkyRoom"));
    for (const wchar_t* id : {L"", L"darksky", L"A room of a later version"}) {
        manager.activeEnvironmentID(id);
        EXPECT_EQ(manager.activeEnvironmentID(), id);
        EXPECT_EQ(&manager.activeEnvironment(), &manager.environment(L"PhotoBooth"));
    }
}

TEST_F(Environments, TheUsualOneShowsUntilAnotherIsChosenEvenTheUsualOneOfOthers)
{
    GraphicsOptionGroup::get()->reset();
    EXPECT_EQ(manager.activeEnvironment().id, L"PhotoBooth");
    manager.usualEnvironmentID(L"DarkSky");
    EXPECT_EQ(manager.activeEnvironmentID(), L"DarkSky");
    EXPECT_EQ(manager.activeEnvironment().id, L"DarkSky");
    manager.activeEnvironmentID(L"PhotoBooth");
    EXPECT_EQ(manager.activeEnvironment().id, L"PhotoBooth");
    manager.usualEnvironmentID(L"PhotoBooth");
    EXPECT_EQ(manager.activeEnvironmentID(), L"PhotoBooth");
}

TEST_F(Environments, AChoiceIsAnOptionOfTheUserWhoseSitesHearOfIt)
{
    struct : Vs::OptionEventSite
    {
        void optionChanged(Vs::OptionEvent* event) override { heard.push_back(event->name()); }
        std::vector<std::string> heard;
    } site;
    GraphicsOptionGroup::get()->subscribe(&site);
    manager.activeEnvironmentID(L"GreyRoom");
    manager.activeEnvironmentID(L"DarkSky");
    manager.activeEnvironmentID(L"DarkSky");
    GraphicsOptionGroup::get()->unsubscribe(&site);
    EXPECT_EQ(GraphicsOptionGroup::get()->activeEnvironment(), L"DarkSky");
    EXPECT_GE(site.heard.size(), 1u);
    EXPECT_LE(site.heard.size(), 2u) << "the same again is no change";
}

TEST_F(Environments, LinesAndGridsStandOutFromTheGroundTheyAreSeenOn)
{
    const auto brightness = [](const Vs::Colour& c) {
        return std::pow(0.21f * c.r + 0.72f * c.g + 0.07f * c.b, 1 / 2.2f);
    };
    std::set<std::tuple<float, float, float>> grids;
    for (const Environment& each : manager.environments()) {
        for (const double height : {-0.3, -0.9}) {
            const Vs::Colour ground = each.seen({std::sqrt(1 - height * height), 0, height});
            EXPECT_GT(std::abs(brightness(each.line) - brightness(ground)), 0.25f) << each.id.c_str();
            EXPECT_GT(std::abs(brightness(each.gridColor()) - brightness(ground)), 0.1f)
                << testing::PrintToString(each.id) << " at " << height;
        }
        EXPECT_GT(std::abs(brightness(each.line) - brightness(each.plain)), 0.25f);
        grids.emplace(each.grid.r, each.grid.g, each.grid.b);
    }
    EXPECT_EQ(grids.size(), 6u);
}

TEST_F(Environments, TheHorizonIsWhereTheSkyMeetsTheGroundAndBlurWidensIt)
{
    const Environment& pool = manager.environment(L"InfinityPool");
    const auto jump = [&](float blur) {
        const Vs::Colour above = pool.seen(GkVector3d(1, 0, 0.02).normal(), blur);
        const Vs::Colour below = pool.seen(GkVector3d(1, 0, -0.02).normal(), blur);
        return above.r - below.r;
    };
    EXPECT_GT(jump(0), 0.3f);
    EXPECT_LT(jump(0.5f), jump(0) / 3);
    EXPECT_GT(pool.seen({0, 0, 1}).b, pool.seen({0, 0, -1}).b);
}

} // namespace
