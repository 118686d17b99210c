#include "Server/CommonData/NamedViews.h"

#include "Server/Base/StringTable.h"
#include "Server/Base/Warning.h"
#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/CommonData/NamedViewRequests.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/Server/Scene/OneAsset.h"

#include <algorithm>
#include <memory>
#include <random>

namespace {

using namespace Vs::NameView;
using Vs::Transaction;
using Vs::Scene::Camera;

class NamedViewsTest : public SceneTests::OneAsset
{
protected:
    NamedViewsTest() { Vs::StringTable::language("en"); }

    Vs::CommonData::CommonDataAssetSettings& settings()
    {
        return *Vs::cast<Vs::CommonData::CommonDataAssetSettings>(asset->adapter()->assetSettings());
    }
    NamedViews& views() { return *settings().namedViews(); }
    std::vector<std::wstring> names()
    {
        std::vector<std::wstring> names;
        for (const auto& view : views().views())
            names.push_back(view->name());
        return names;
    }
    /// The user's own, which come after the standard ones.
    std::vector<std::wstring> ownNames()
    {
        std::vector<std::wstring> all = names();
        all.erase(all.begin(), all.begin() + 4);
        return all;
    }

    /// Runs the request, and returns its errors.
    std::wstring complaint(Vs::Request* request)
    {
        Vs::Status status;
        const bool made = request->execute(asset, status);
        EXPECT_EQ(made, status.isOk());
        request->destroy();
        return status.toString();
    }
    std::wstring add(Vs::StrongRef<Camera> camera = Camera::make())
    {
        return complaint(NewNamedViewRequest::make(asset, std::move(camera)));
    }
    std::wstring remove(const std::wstring& name)
    {
        return complaint(DeleteNamedViewRequest::make(asset, name));
    }
    std::wstring rename(const std::wstring& name, const std::wstring& newName)
    {
        return complaint(UpdateNamedViewNameRequest::make(asset, name, newName));
    }

    std::vector<std::wstring> warnings;
    const Vs::WarningHandler handler{[this](const std::wstring& text) { warnings.push_back(text); }};
};

using Names = std::vector<std::wstring>;

/// Every number of the state, to the last bit.
std::vector<double> numbersOf(const Camera& camera)
{
    return {camera.position().x,    camera.position().y,        camera.position().z, camera.target().x,
            camera.target().y,      camera.target().z,          camera.up().x,       camera.up().y,
            camera.up().z,          camera.clipNear(),          camera.clipFar(),    camera.extentsWidth(),
            camera.extentsHeight(), double(camera.projection())};
}

Vs::StrongRef<Camera> randomCamera(unsigned seed)
{
    std::mt19937 random(seed);
    const auto number = [&] { return std::ldexp(double(random()) / 3, int(random() % 40) - 20); };
    Vs::StrongRef<Camera> camera = Camera::make();
    camera->position({number(), -number(), number()});
    camera->target({-number(), number(), 0.1});
    camera->up({number(), number(), number()});
    camera->clipNear(number());
    camera->clipFar(number());
    camera->extentsWidth(number());
    camera->extentsHeight(number());
    camera->projection(1 + int(random() % 2));
    return camera;
}

TEST_F(NamedViewsTest, StandardViewsLookAtTheSidesOfTheModel)
{
    EXPECT_EQ(names(), (Names{L"Home", L"Top", L"Front", L"Right"}));
    const auto looks = [&](const wchar_t* name, const GkVector3d& along, const GkVector3d& up) {
        const Camera& camera = *views().find(name)->camera();
        EXPECT_TRUE(isNear(camera.direction(), along.normal())) << testing::PrintToString(name);
        EXPECT_TRUE(isNear(camera.screenUp(), up.normal())) << testing::PrintToString(name);
        EXPECT_TRUE(views().find(name)->isFixed());
        EXPECT_FALSE(views().find(name)->enableModify());
    };
    looks(L"Front", {0, 1, 0}, {0, 0, 1});
    looks(L"Top", {0, 0, -1}, {0, 1, 0});
    looks(L"Right", {-1, 0, 0}, {0, 0, 1});
    looks(L"Home", {-1, 1, -1}, {-1, 1, 2});
    // A model from another program, whose up is Y and whose front faces Z.
    ASSERT_TRUE(settings().sceneOrientation({0, 1, 0}, {0, 0, 1}));
    looks(L"Front", {0, 0, -1}, {0, 1, 0});
    looks(L"Top", {0, -1, 0}, {0, 0, -1});
    looks(L"Right", {-1, 0, 0}, {0, 1, 0});
}

TEST_F(NamedViewsTest, NewOnesGetNamesOfTheirOwnAndStayInTheirOrder)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(add(), L"");
    EXPECT_EQ(ownNames(), (Names{L"NamedView", L"NamedView1", L"NamedView2"}));
    EXPECT_EQ(remove(L"NamedView1"), L"");
    EXPECT_EQ(views().generateNamedViewName(L"NamedView"), L"NamedView1");
    EXPECT_EQ(views().generateNamedViewName(L"Front"), L"Front1");
    EXPECT_EQ(rename(L"NamedView", L"  Gehäuse von hinten \t"), L"");
    EXPECT_EQ(ownNames(), (Names{L"Gehäuse von hinten", L"NamedView2"}));
    EXPECT_EQ(views().generateNamedViewName(L"NamedView"), L"NamedView");
    EXPECT_FALSE(views().find(L"NamedView"));
}

TEST_F(NamedViewsTest, WhatCannotBeDoneIsToldAndChangesNothing)
{
    add();
    add();
    EXPECT_NE(rename(L"NamedView", L"NamedView1").find(L"already a named view \"NamedView1\""),
              std::wstring::npos);
    EXPECT_NE(rename(L"NamedView", L"Top").find(L"already a named view \"Top\""), std::wstring::npos);
    EXPECT_NE(rename(L"NamedView", L" \t").find(L"needs a name"), std::wstring::npos);
    EXPECT_NE(rename(L"Nowhere", L"Somewhere").find(L"no named view \"Nowhere\""), std::wstring::npos);
    EXPECT_NE(rename(L"Home", L"Mine").find(L"standard view"), std::wstring::npos);
    EXPECT_NE(remove(L"Front").find(L"standard view"), std::wstring::npos);
    EXPECT_NE(remove(L"Nowhere").find(L"Nowhere"), std::wstring::npos);
    Vs::Status status;
    EXPECT_FALSE(views().updateNamedViewCamera(L"Right", Camera::make().get(), status));
    EXPECT_FALSE(views().updateNamedViewCamera(L"Nowhere", Camera::make().get(), status));
    EXPECT_EQ(rename(L"NamedView", L"NamedView"), L"");
    EXPECT_EQ(ownNames(), (Names{L"NamedView", L"NamedView1"}));
    EXPECT_EQ(Transaction::undoSteps(asset), 2u);
}

TEST_F(NamedViewsTest, EachChangeIsOneStepOfUndo)
{
    const Vs::StrongRef<Camera> first = randomCamera(1), second = randomCamera(2);
    add(first);
    Vs::Status status;
    ASSERT_TRUE(views().updateNamedViewCamera(L"NamedView", second.get(), status));
    rename(L"NamedView", L"Mine");
    remove(L"Mine");
    EXPECT_TRUE(asset->isDirty(false));
    EXPECT_EQ(Transaction::undoName(asset), L"Delete Named View");
    EXPECT_TRUE(Transaction::undo(asset));
    EXPECT_EQ(ownNames(), (Names{L"Mine"}));
    EXPECT_TRUE(Transaction::undo(asset));
    EXPECT_EQ(ownNames(), (Names{L"NamedView"}));
    EXPECT_EQ(numbersOf(*views().find(L"NamedView")->camera()), numbersOf(*second));
    EXPECT_TRUE(Transaction::undo(asset));
    EXPECT_EQ(numbersOf(*views().find(L"NamedView")->camera()), numbersOf(*first));
    EXPECT_TRUE(Transaction::undo(asset));
    EXPECT_TRUE(ownNames().empty());
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(Transaction::redo(asset));
    EXPECT_EQ(ownNames(), (Names{L"Mine"}));
}

TEST_F(NamedViewsTest, AreACopyOfTheCameraAndSavedToTheLastBit)
{
    std::vector<std::vector<double>> kept;
    for (unsigned seed = 0; seed < 20; ++seed) {
        const Vs::StrongRef<Camera> camera = randomCamera(seed);
        kept.push_back(numbersOf(*camera));
        add(camera);
        camera->position({1, 2, 3});
    }
    rename(L"NamedView7", L"\"Größe\" \\ 漢字 😀");
    const Names before = names();
    reopen();
    EXPECT_EQ(names(), before);
    for (unsigned seed = 0; seed < 20; ++seed)
        EXPECT_EQ(numbersOf(*views().views()[4 + seed]->camera()), kept[seed]) << seed;
    EXPECT_EQ(Transaction::undoSteps(asset), 0u);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(NamedViewsTest, ScriptsFindStandardViewsInEveryLanguage)
{
    Vs::StringTable::language("de");
    const Names german = names();
    EXPECT_NE(german[2], L"Front");
    EXPECT_EQ(views().find(L"Front")->name(), german[2]);
    EXPECT_EQ(views().find(german[2]).get(), views().find(L"Front").get());
    add();
    EXPECT_NE(rename(L"NamedView", L"Front"), L"");
    EXPECT_NE(rename(L"NamedView", german[2]), L"");
    Vs::StringTable::language("en");
    EXPECT_EQ(views().views()[2]->name(), L"Front");
}

TEST_F(NamedViewsTest, DamagedOnesAreLeftOutWithOneWarning)
{
    add(randomCamera(3));
    add(randomCamera(4));
    const std::wstring sound = asset->setting("namedViews");
    const std::wstring view = sound.substr(1, sound.find(L'}'));
    const auto with = [&](const std::wstring& from, const std::wstring& to) {
        std::wstring damaged = view;
        const size_t at = damaged.find(from);
        EXPECT_NE(at, std::wstring::npos);
        return damaged.replace(at, from.size(), to);
    };
    const std::wstring damaged[] = {L"no JSON at all",
                                    L"{\"name\": \"NamedView\"}",
                                    L"[7]",
                                    L"[" + view + L"," + view + L"]",
                                    L"[" + view + L"," + with(L"\"NamedView\"", L"\"\"") + L"]",
                                    L"[" + view + L"," + with(L"\"NamedView\"", L"\"Front\"") + L"]",
                                    L"[" + with(L"\"up\":\"", L"\"up\":\"nan,") + L"]",
                                    L"[" + with(L"\"width\":", L"\"width\":\"wide\",\"was\":") + L"]",
                                    sound.substr(0, sound.size() - 5)};
    for (const std::wstring& text : damaged) {
        warnings.clear();
        asset->setting("namedViews", text);
        EXPECT_LE(ownNames().size(), 1u) << testing::PrintToString(text);
        EXPECT_EQ(names().front(), L"Home");
        EXPECT_EQ(warnings.size(), 1u) << testing::PrintToString(text);
        // What is left remains usable.
        EXPECT_EQ(add(), L"");
        EXPECT_TRUE(views().find(views().views().back()->name()));
    }
}

} // namespace
