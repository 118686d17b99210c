// The component tree reads again only what a change touched: it must equal the tree that reading all of the
// data would give.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/Private/DeleteRequest.h"
#include "Server/DataModel/Selection/RenameRequest.h"
#include "Server/DataModel/Selection/VisibilityRequest.h"
#include "Tests/Server/DataModel/Edit/EditFixture.h"
#include "Tests/Support/RealData.h"
#include "Tests/Support/Seed.h"

#include <map>
#include <random>
#include <sstream>

using namespace Vs;

namespace {

/// Each line is a component.
std::string asText(const PartTree& tree, const std::vector<PartTree::Node>& nodes)
{
    std::ostringstream text;
    for (const PartTree::Node& node : nodes) {
        text << node.id << ' ' << Strings::narrow(node.name) << ' ' << node.visible << ' '
             << node.colour.value_or(Colour{-1, -1, -1, -1}).r;
        for (const auto& row : node.placement.entry)
            for (const double value : row)
                text << ' ' << value + 0.0; // A file may have -0.
        if (node.body >= 0) {
            const PartTree::Body& body = tree.bodies[static_cast<size_t>(node.body)];
            text << ' ' << Strings::narrow(body.name) << ' ' << body.colour.r;
        }
        text << '\n' << asText(tree, node.children);
    }
    return text.str();
}

std::string asText(const Component& parent)
{
    std::ostringstream text;
    for (const auto& child : parent.children) {
        text << child->id << ' ' << Strings::narrow(child->name.text()) << ' ' << child->visible << ' '
             << child->colour.value_or(Colour{-1, -1, -1, -1}).r;
        for (const auto& row : child->placement.matrix().entry)
            for (const double value : row)
                text << ' ' << value + 0.0; // A file may have -0.
        if (child->body)
            text << ' ' << Strings::narrow(child->body->name()) << ' ' << child->body->colour().r;
        text << '\n' << asText(*child);
    }
    return text.str();
}

/// Paths count the siblings of a name, and new names get the lowest free number.
void expectCounted(const Asset& asset, const Component& parent, const std::wstring& path)
{
    std::map<std::wstring, int> counts;
    for (const auto& child : parent.children) {
        const std::wstring text =
            path + child->name.text() + L':' + std::to_wstring(++counts[child->name.text()]);
        ASSERT_EQ(pathText(ObjectPath{child->id}, asset), text);
        Status status;
        ASSERT_EQ(findPath(asset, text, status), ObjectPath{child->id}) << Strings::narrow(status.toString());
        ASSERT_NO_FATAL_FAILURE(expectCounted(asset, *child, text + L'/'));
    }
    int free = 1;
    while (counts.contains(L"Box" + std::to_wstring(free)))
        ++free;
    ASSERT_EQ(asset.data().names(parent).free(L"Box"), L"Box" + std::to_wstring(free));
}

/// The tree as everybody sees it, and the one read from the data.
void expectUpToDate(const Asset& asset)
{
    const PartTree tree = asset.data().source().withKernel([](ModelKernel& kernel) { return kernel.tree(); });
    ASSERT_EQ(asText(*asset.components()), asText(tree, tree.roots));
    for (const Component* component : componentsOf(asset))
        ASSERT_EQ(asset.findComponent(component->id), component);
    ASSERT_NO_FATAL_FAILURE(expectCounted(asset, *asset.components(), L""));
}

size_t count(const std::vector<PartTree::Node>& nodes)
{
    size_t all = nodes.size();
    for (const PartTree::Node& node : nodes)
        all += count(node.children);
    return all;
}

/// What a save writes, and what another model is given, is what is visible, though steps that were or can be
/// undone are still known.
void expectWrittenAsSeen(const Asset& asset)
{
    std::ostringstream stream;
    std::vector<std::string> roots;
    for (const auto& child : asset.components()->children)
        roots.push_back(child->id);
    const auto other = ModelKernel::create();
    asset.data().source().withKernel([&](ModelKernel& kernel) {
        kernel.write(stream);
        other->paste(kernel, roots);
    });
    const PartTree tree = ModelKernel::read(stream.str())->tree();
    ASSERT_EQ(asText(*asset.components()), asText(tree, tree.roots));
    ASSERT_EQ(count(other->tree().roots), count(tree.roots));
    ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset));
}

class TreeRefreshTest : public EditTest
{
protected:
    void run(Asset& asset, Request* request)
    {
        Status own;
        EXPECT_TRUE(request->execute(&asset, own)) << Strings::narrow(own.toString());
        request->destroy();
    }

    void change(Asset& asset, unsigned number)
    {
        const auto all = componentsOf(asset);
        if (all.empty() || random() % 6 == 0) {
            ASSERT_TRUE(ModelBuilder(&asset).box(1, 2, 3 + number, {}, status));
            return;
        }
        const std::string id = all[random() % all.size()]->id;
        const GkMatrix3d aside = GkMatrix3d::translation({double(number), 0, 1});
        switch (random() % 8) {
        case 0:
            return run(asset, DeleteRequest::make(&asset, {{id}}));
        case 1:
            return run(asset, RenameRequest::make(&asset, {{id}}, L"Box" + std::to_wstring(number % 7)));
        case 2:
            return run(asset, VisibilityRequest::make({{id}}, !asset.findComponent(id)->visible));
        case 3:
            return run(asset, EditRequest::make(&asset, L"Move", MoveEdit{{id}, aside}));
        case 4:
        case 5: {
            // No colour, and a few that recur.
            const auto red = static_cast<float>(number % 4) / 4;
            const auto colour = number % 4 ? std::optional(Colour{red, 0, 1, 1}) : std::nullopt;
            return run(asset, EditRequest::make(&asset, L"Colour", ColourEdit{{{id}}, colour}));
        }
        default:
            return run(asset, EditRequest::make(&asset, L"Copy", CopyEdit{{id}, {aside}}));
        }
    }

    std::mt19937 random{TestSupport::seed()};
};

} // namespace

TEST_F(TreeRefreshTest, WhatAnUndoBringsBackHasItsMeshAndWhatComesInItsPlaceHasItsOwn)
{
    Asset& asset = *newAsset();
    const auto body = [&] { return asset.components()->children.front()->body; };
    ASSERT_TRUE(ModelBuilder(&asset).box(10, 10, 10, {}, status));
    {
        const auto mesh = body()->mesh();
        run(asset, DeleteRequest::make(&asset, {{asset.components()->children.front()->id}}));
        ASSERT_TRUE(Transaction::undo(&asset));
        EXPECT_EQ(body()->mesh(), mesh) << "it is not made again";
    }
    for (int size = 1; size <= 20; ++size) {
        ASSERT_TRUE(Transaction::undo(&asset));
        ASSERT_TRUE(asset.components()->children.empty());
        ASSERT_TRUE(ModelBuilder(&asset).box(size, 1, 1, {}, status));
        EXPECT_NEAR(body()->mesh()->bounds.high().x, size, 1e-6);
    }
}

TEST_F(TreeRefreshTest, AfterAnyChangeTheTreeIsThatOfTheData)
{
    SKIP_WITHOUT_REAL_DATA();
    Document* document = open((TestSupport::realDataFolder() / "as1-oc-214.stp").wstring());
    ASSERT_TRUE(document);
    for (unsigned number = 0; number < 80; ++number) {
        // The first change of a model that was read relies on the file's tree.
        if (number % 10 == 9) {
            const std::wstring file = scratch("saved" + std::to_string(number) + ".tdsn");
            ASSERT_TRUE(document->saveAs(file, status)) << Strings::narrow(status.toString());
            DocumentMgr::get()->close(document);
            ASSERT_TRUE(document = DocumentMgr::get()->open(file, status));
        }
        Asset& asset = *document->activeAsset();
        change(asset, number);
        ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset)) << "change " << number;
        while (random() % 3 == 0 && Transaction::undo(&asset))
            ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset)) << "undo after " << number;
        while (random() % 3 == 0 && Transaction::redo(&asset))
            ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset)) << "redo after " << number;
        if (random() % 8 == 0) {
            ASSERT_NO_FATAL_FAILURE(expectWrittenAsSeen(asset)) << "written after " << number;
        }
    }
}

TEST_F(TreeRefreshTest, WhatIsShownAmidATransactionIsRightAsWell)
{
    Asset& asset = *boxAndCylinder();
    const std::string before = digestOf(asset);
    {
        Transaction transaction(&asset, L"Whole");
        for (unsigned number = 0; number < 20; ++number) {
            change(asset, number);
            ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset));
        }
    }
    EXPECT_EQ(digestOf(asset), before);
    ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset));
}

TEST_F(TreeRefreshTest, ThousandsThatComeAndGoAmongTenThousandStandInTheirOrder)
{
    constexpr size_t kCount = 10000;
    Asset& asset = *newAsset();
    ASSERT_TRUE(ModelBuilder(&asset).box(1, 2, 3, {}, status));
    const std::string first = asset.components()->children.front()->id;
    std::vector<GkMatrix3d> motions;
    for (size_t i = 1; i < kCount; ++i)
        motions.push_back(GkMatrix3d::translation({double(i), 0, 0}));
    run(asset, EditRequest::make(&asset, L"Copy", CopyEdit{{first}, motions}));
    const unsigned made = Transaction::undoSteps(&asset);
    ASSERT_EQ(asset.components()->children.size(), kCount);
    ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset));
    for (unsigned number = 0; number < 5; ++number) {
        const auto& children = asset.components()->children;
        std::vector<ObjectPath> some;
        std::vector<std::string> ids;
        const unsigned every = 2 + static_cast<unsigned>(random() % 5);
        for (size_t i = random() % every; i < children.size(); i += every) {
            some.push_back({children[i]->id});
            ids.push_back(children[i]->id);
        }
        const GkMatrix3d aside = GkMatrix3d::translation({0, double(number), 1});
        switch (random() % 5) {
        case 0:
            run(asset, DeleteRequest::make(&asset, some));
            break;
        case 1:
            run(asset, VisibilityRequest::make(some, number % 2 == 0));
            break;
        case 2:
            run(asset, EditRequest::make(&asset, L"Move", MoveEdit{ids, aside}));
            break;
        case 3:
            run(asset, EditRequest::make(&asset, L"Colour", ColourEdit{some, Colour{1, 0, 0}}));
            break;
        default:
            ids.resize(std::min<size_t>(ids.size(), 1000));
            run(asset, EditRequest::make(&asset, L"Copy", CopyEdit{ids, {aside}}));
        }
        ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset)) << "change " << number;
        while (random() % 2 == 0 && Transaction::undoSteps(&asset) > made && Transaction::undo(&asset))
            ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset)) << "undo after " << number;
        while (random() % 2 == 0 && Transaction::redo(&asset))
            ASSERT_NO_FATAL_FAILURE(expectUpToDate(asset)) << "redo after " << number;
    }
    ASSERT_NO_FATAL_FAILURE(expectWrittenAsSeen(asset));
}
