#include "Server/Base/Warning.h"
#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/Server/Scene/OneAsset.h"

#include <limits>
#include <string>
#include <vector>

namespace {

class AssetSettings : public SceneTests::OneAsset
{
protected:
    Vs::CommonData::CommonDataAssetSettings& settings()
    {
        return *Vs::cast<Vs::CommonData::CommonDataAssetSettings>(asset->adapter()->assetSettings());
    }
    testing::AssertionResult standsAs(const GkVector3d& up, const GkVector3d& front)
    {
        const testing::AssertionResult upright = isNear(settings().sceneUp(), up);
        return upright ? isNear(settings().sceneFront(), front) : upright;
    }

    std::vector<std::wstring> warnings;
    const Vs::WarningHandler handler{[this](const std::wstring& text) { warnings.push_back(text); }};
};

TEST_F(AssetSettings, AModelStandsOnZAndFacesTheViewerUntilItIsTurned)
{
    EXPECT_TRUE(standsAs({0, 0, 1}, {0, -1, 0}));
    // Only the part of the front perpendicular to the up counts, and lengths don't.
    EXPECT_TRUE(settings().sceneOrientation({0, 5, 0}, {0, 7, 1e-3}));
    EXPECT_TRUE(standsAs({0, 1, 0}, {0, 0, 1}));
    EXPECT_TRUE(asset->isSmudge());

    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const GkVector3d& nonsense : {GkVector3d(0, 0, 0), GkVector3d(none, 0, 1), GkVector3d(0, -3, 0),
                                       GkVector3d(0, 1, 1e-12), GkVector3d(0, 0, 1e300)}) {
        EXPECT_FALSE(settings().sceneOrientation({0, 1, 0}, nonsense));
        EXPECT_FALSE(settings().sceneOrientation(nonsense, {0, 1, 0}));
    }
    EXPECT_TRUE(standsAs({0, 1, 0}, {0, 0, 1}));
}

TEST_F(AssetSettings, HomeLooksFromACornerOfTheModelUntilAnotherViewIsKept)
{
    const auto looks = [&](const GkVector3d& eye, const GkVector3d& up) {
        const testing::AssertionResult from = isNear(settings().homeView().eye, eye.normal());
        return from ? isNear(settings().homeView().up, up.normal()) : from;
    };
    EXPECT_TRUE(looks({1, -1, 1}, {-1, 1, 2}));
    ASSERT_TRUE(settings().sceneOrientation({0, 1, 0}, {0, 0, 1}));
    EXPECT_TRUE(looks({1, 1, 1}, {-1, 2, -1})) << "as the model stands";
    EXPECT_TRUE(settings().homeView({{0, 0, 7}, {0, 2, 5}}));
    EXPECT_FALSE(settings().homeView({{0, 0, 0}, {0, 1, 0}}));
    EXPECT_FALSE(settings().homeView({{0, 3, 0}, {0, -1, 0}}));
    reopen();
    EXPECT_TRUE(looks({0, 0, 1}, {0, 1, 0}));
    EXPECT_TRUE(warnings.empty());
    asset->setting("homeEye", L"0,0");
    asset->setting("perspWithOrthoFaces", L"perhaps");
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(looks({1, 1, 1}, {-1, 2, -1}));
        EXPECT_FALSE(settings().perspWithOrthoFaces());
    }
    EXPECT_EQ(warnings.size(), 2u) << "each damaged value is told once";
}

TEST_F(AssetSettings, AreSavedWithTheAsset)
{
    const GkVector3d up = GkVector3d(1, 2, 3).normal();
    ASSERT_TRUE(settings().sceneOrientation(up, {1, 0, 0}));
    const GkVector3d front = settings().sceneFront();
    settings().perspWithOrthoFaces(true);
    reopen();
    EXPECT_EQ(settings().sceneUp().z, up.z);
    EXPECT_EQ(settings().sceneFront().x, front.x);
    EXPECT_TRUE(settings().perspWithOrthoFaces());
    settings().perspWithOrthoFaces(false);
    reopen();
    EXPECT_FALSE(settings().perspWithOrthoFaces());
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AssetSettings, DamagedValuesCountAsNotSetAndAreToldOnce)
{
    const std::pair<const wchar_t*, const wchar_t*> damaged[] = {{L"up", L""},          {L"", L"1,2"},
                                                                 {L"nan,0,1", L""},     {L"0,0,0", L"1,0,0"},
                                                                 {L"0,0,1", L"0,0,-4"}, {L"1e300,0,0", L""}};
    for (const auto& [up, front] : damaged) {
        warnings.clear();
        asset->setting("sceneUp", up);
        asset->setting("sceneFront", front);
        EXPECT_TRUE(standsAs({0, 0, 1}, {0, -1, 0}));
        ASSERT_EQ(warnings.size(), 1u) << testing::PrintToString(up) << testing::PrintToString(front);
        EXPECT_NE(warnings.front().find(*up ? up : front), std::wstring::npos);
    }
    // Setting only the up takes the front along, as far as there is one.
    warnings.clear();
    asset->setting("sceneUp", L"0,3,4");
    asset->setting("sceneFront", L"");
    EXPECT_TRUE(standsAs({0, 0.6, 0.8}, {0, -0.8, 0.6}));
    EXPECT_TRUE(warnings.empty());

    asset->setting("perspWithOrthoFaces", L"perhaps");
    EXPECT_FALSE(settings().perspWithOrthoFaces());
    EXPECT_FALSE(settings().perspWithOrthoFaces());
    EXPECT_EQ(warnings.size(), 1u);
}

} // namespace
