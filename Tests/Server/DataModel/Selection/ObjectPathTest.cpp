#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/Selection.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Support/RealData.h"

using namespace Vs;

class ObjectPathTest : public DataModelTest
{
protected:
    Asset* assetWith(std::initializer_list<const wchar_t*> names)
    {
        Asset* asset = newAsset();
        for (const wchar_t* name : names)
            EXPECT_TRUE(ModelBuilder(asset).box(1, 2, 3, {{}, name, {}}, status));
        return asset;
    }

    /// The component's position among its siblings; -1 with the reason in `why`.
    int found(const Asset& asset, const wchar_t* text)
    {
        status.clear();
        const auto path = findPath(asset, text, status);
        why = Strings::narrow(status.toString());
        EXPECT_EQ(path.has_value(), why.empty()) << why;
        const auto& all = asset.components()->children;
        for (size_t i = 0; path && i < all.size(); ++i)
            if (all[i]->id == path->component)
                return int(i);
        return -1;
    }

    std::string why;
};

TEST_F(ObjectPathTest, TextsNameWhatTheyWereMadeFromWhateverTheNamesAre)
{
    Asset* asset = assetWith({L"Bolt", L"Bolt", L"Bolt:1", L"a/b \"c\"\\d", L"Body1", L" ", L"'", L"Face2"});
    for (const auto& component : asset->components()->children) {
        const ObjectPath paths[] = {{component->id},
                                    {component->id, ObjectPath::Leaf::Body},
                                    {component->id, ObjectPath::Leaf::Solid, 0},
                                    {component->id, ObjectPath::Leaf::Face, 5},
                                    {component->id, ObjectPath::Leaf::Edge, 11},
                                    {component->id, ObjectPath::Leaf::Vertex, 7}};
        for (const ObjectPath& path : paths) {
            const std::wstring text = pathText(path, *asset);
            EXPECT_EQ(findPath(*asset, text, status), path) << Strings::narrow(text);
        }
    }
    EXPECT_TRUE(status.isOk()) << Strings::narrow(status.toString());
    EXPECT_EQ((pathText(ObjectPath{asset->components()->children[1]->id, ObjectPath::Leaf::Face, 2}, *asset)),
              L"Bolt:2/Body1/Face3");
}

TEST_F(ObjectPathTest, WhatAPersonTypesMayBeShorter)
{
    Asset* asset = assetWith({L"Plate", L"Bolt", L"Bolt"});
    EXPECT_EQ(found(*asset, L"Plate"), 0);
    EXPECT_EQ(found(*asset, L"Plate/Face6"), 0);
    EXPECT_EQ(found(*asset, L"Bolt:2/Body1"), 2);
    EXPECT_EQ(found(*asset, L"\"Plate\"/Body1"), 0);
}

TEST_F(ObjectPathTest, EachWrongPathHasItsOwnReason)
{
    Asset* asset = assetWith({L"Plate", L"Bolt", L"Bolt"});
    const std::pair<const wchar_t*, const char*> wrong[] = {
        {L"", "no \"\" in the model"},
        {L"Nut", "no \"Nut\" in the model"},
        {L"Bolt", "is ambiguous, there are 2"},
        {L"Bolt:3", "no \"Bolt:3\""},
        {L"Bolt:0", "no \"Bolt:0\""},
        {L"Plate/Body2", "no \"Body2\" in \"Plate\""},
        {L"Plate/Body1/Body1", "no \"Body1\""},
        {L"Plate/Face0", "no \"Face0\""},
        {L"Plate/Face99999999999", "no \"Face99999999999\""},
        {L"Plate/Face7", "\"Plate\" has no Face7: the last is number 6"},
        {L"Plate/Edge13", "\"Plate\" has no Edge13: the last is number 12"},
        {L"Plate/Face1/Edge1", "no \"Edge1\""},
        {L"Plate/Face1/", "no \"\""},
        {L"Pla\\te", "a backslash may only stand"},
    };
    for (const auto& [text, reason] : wrong) {
        EXPECT_EQ(found(*asset, text), -1);
        EXPECT_NE(why.find(reason), std::string::npos) << why;
        EXPECT_EQ(why.find('\n'), std::string::npos) << why;
    }
}

TEST_F(ObjectPathTest, APathIsStaleWhileItsObjectIsGoneAndRightWhenItIsBack)
{
    Asset* asset = assetWith({L"Plate", L"Bolt"});
    const auto path = findPath(*asset, L"Bolt/Edge3", status);
    ASSERT_TRUE(path);
    ASSERT_TRUE(Transaction::undo(asset));
    EXPECT_EQ(resolvePath(*path, *asset, status), nullptr);
    EXPECT_TRUE(status.matchingError("no longer in"));
    EXPECT_EQ(pathText(*path, *asset), L"");
    EXPECT_FALSE(placementOf(*path, *asset));
    ASSERT_TRUE(Transaction::redo(asset));
    status.clear();
    EXPECT_NE(resolvePath(*path, *asset, status), nullptr);
    EXPECT_EQ(pathText(*path, *asset), L"Bolt:1/Body1/Edge3");
    const LogicalSelection one(asset, *path, nullptr), same(asset, *path, nullptr),
        other(asset, path->component, nullptr);
    EXPECT_TRUE(one.isEqualTo(same));
    EXPECT_FALSE(one.isEqualTo(other));
}

TEST_F(ObjectPathTest, AChangeConcernsWhatIsSelectedAndHoldsItOrLiesInItAlone)
{
    using Path = ObjectPath;
    SelectionSet set;
    const auto concerns = [&](const char* changed, const char* added, const char* removed) {
        Component first, second;
        ComponentsEvent::Changes changes;
        if (changed) {
            first.id = changed;
            changes.changed.push_back(&first);
        }
        if (added) {
            second.id = added;
            changes.added.push_back(&second);
        }
        if (removed)
            changes.removed.emplace_back(removed);
        return set.components().concernedBy(changes);
    };
    const auto select = [&](const Path& path) {
        set.replace({new LogicalSelection(nullptr, path, nullptr)});
    };
    for (const Path::Leaf leaf : {Path::Leaf::Component, Path::Leaf::Face}) {
        select({"0:1:1:1/0:1:1:2:3", leaf});
        for (const char* one : {"0:1:1:1", "0:1:1:1/0:1:1:2:3", "0:1:1:1/0:1:1:2:3/0:1:1:4:1"}) {
            EXPECT_TRUE(concerns(one, nullptr, nullptr)) << one;
            EXPECT_TRUE(concerns(nullptr, nullptr, one)) << one;
        }
        for (const char* other : {"0:1:1:2", "0:1:1:1/0:1:1:2:30", "0:1:1:11", "0:1:1:1/0:1:1:2:4"})
            EXPECT_FALSE(concerns(other, other, other)) << other;
        EXPECT_TRUE(concerns(nullptr, "0:1:1:1/0:1:1:2:3/0:1:1:4:9", nullptr));
    }
    select({""});
    EXPECT_TRUE(concerns(nullptr, "0:1:1:2", nullptr)) << "all lies in the root";
    set.clear();
    EXPECT_FALSE(concerns("0:1:1:1", "0:1:1:2", "0:1:1:3"));
}

TEST_F(ObjectPathTest, OccurrencesOfARealAssemblyAreToldApart)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = open((TestSupport::realDataFolder() / "as1-oc-214.stp").wstring());
    ASSERT_NE(document, nullptr);
    const Asset& asset = *document->activeAsset();
    std::vector<GkPoint3d> places;
    for (const Component* component : componentsOf(asset)) {
        const ObjectPath path{component->id};
        EXPECT_EQ(findPath(asset, pathText(path, asset), status), path);
        if (component->name == L"bolt" || (component->body && component->body->name() == L"bolt")) {
            places.push_back(*placementOf(path, asset) * GkPoint3d());
            for (size_t i = 0; i + 1 < places.size(); ++i)
                EXPECT_GT(places[i].distanceTo(places.back()), 1.0);
        }
    }
    EXPECT_EQ(places.size(), 6u);
}
