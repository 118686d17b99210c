#include "UI/Base/Workspace/Layout.h"

#include "Server/Base/Strings.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Workspace/LayoutStrategy.h"

#include <fstream>
#include <memory>
#include <sstream>

using namespace Vu;

namespace {

class LayoutTest : public UiTest
{
protected:
    std::unique_ptr<Layout> load(const std::string& xml, const std::wstring& filter = L"")
    {
        status.clear();
        return std::unique_ptr<Layout>(Layout::load(write("layout.xml", xml), filter, status));
    }
    static size_t canvases(Area& area)
    {
        std::vector<Area*> found;
        area.childrenByContents(Area::graphicsCanvas(), found);
        return found.size();
    }
    static std::string text(const Area& area)
    {
        std::string result = Vs::Strings::narrow(area.name());
        if (!area.children().empty()) {
            result += "(";
            for (const auto& child : area.children())
                result += text(*child) + " ";
            result += ")";
        }
        return result;
    }
    Vs::Status status;
};

constexpr const char* kForms = R"(<layout>
  <area name="Browser" contents="Browser" placement="left" extent="250" visible="false"/>
  <area name="Canvas" contents="GraphicsCanvas" filter=""/>
  <area name="Views" contents="SplitView" placement="right" filter="Pair">
    <area name="A" contents="GraphicsCanvas"/>
    <area name="B" contents="GraphicsCanvas" ignoreOverlayable="true"/>
  </area>
</layout>)";

} // namespace

TEST_F(LayoutTest, TheFilterChoosesAmongTheFormsOfALayout)
{
    EXPECT_EQ(text(*load(kForms)), "Root(Browser Canvas )");
    EXPECT_EQ(text(*load(kForms, L"Pair")), "Root(Browser Views(A B ) )");
    EXPECT_TRUE(status.isOk());
    const auto layout = load(kForms);
    const Area* browser = layout->childByName(L"Browser", false);
    EXPECT_EQ(browser->placement(), EPlacement::Left);
    EXPECT_EQ(browser->extent(), 250);
    EXPECT_FALSE(browser->visible());
}

TEST_F(LayoutTest, AKeptLayoutIsReadBackAsItWas)
{
    const auto layout = load(kForms, L"Pair");
    layout->childByName(L"B", true)->collapsed(true);
    const std::wstring kept = (folder.path() / "kept.xml").wstring();
    Layout::persist(kept, layout.get());
    const std::unique_ptr<Layout> again(Layout::load(kept, L"Pair", status));
    EXPECT_EQ(text(*again), text(*layout));
    const Area* b = again->childByName(L"B", true);
    EXPECT_TRUE(b->collapsed());
    EXPECT_TRUE(b->ignoreOverlayable());
    EXPECT_EQ(again->childByName(L"Views", true)->placement(), EPlacement::Right);
    EXPECT_TRUE(status.isOk());
}

TEST_F(LayoutTest, ABrokenFileStillGivesACanvasAndNamesItsLine)
{
    const auto layout = load("<layout>\n  <area name=\"X\" contents=\"Browser\"/>\n  <area\n</layout>");
    EXPECT_EQ(canvases(*layout), 1u);
    EXPECT_EQ(text(*layout), "Root(Canvas )");
    ASSERT_TRUE(status.isError());
    EXPECT_TRUE(status.matchingError("layout.xml:4:")) << Vs::Strings::narrow(status.toString());

    Vs::Status missing;
    const std::unique_ptr<Layout> none(Layout::load(L"/no/such/layout.xml", L"", missing));
    EXPECT_EQ(canvases(*none), 1u);
    EXPECT_TRUE(missing.matchingError("/no/such/layout.xml"));
    EXPECT_EQ(canvases(*load("<toolbars/>")), 1u);
    EXPECT_EQ(canvases(*load(kForms, L"NoSuchForm")), 0u) << "the browser alone is a layout";
}

TEST_F(LayoutTest, WrongValuesAreToldAndReadAsTheirDefaults)
{
    const auto layout = load(R"(<layout><area name="A" placement="upstairs" extent="-5" visible="maybe"/>
                                <window/></layout>)");
    const Area* area = layout->childByName(L"A", false);
    EXPECT_EQ(area->placement(), EPlacement::Fill);
    EXPECT_EQ(area->extent(), 0);
    EXPECT_TRUE(status.matchingError("upstairs"));
    EXPECT_TRUE(status.matchingError("-5"));
    EXPECT_TRUE(status.matchingError("maybe"));
    EXPECT_TRUE(status.matchingError("<window>"));
    std::string deep = "<layout>";
    for (int i = 0; i < 5000; ++i)
        deep += "<area name=\"d\">";
    for (int i = 0; i < 5000; ++i)
        deep += "</area>";
    load(deep + "</layout>");
    EXPECT_TRUE(status.matchingError("nested too deeply"));
}

TEST_F(LayoutTest, SplitViewsAreReplacedByTheirFirstCanvas)
{
    auto layout = load(kForms, L"Pair");
    GraphicsCanvas* first = layout->childByName(L"A", true)->canvas();
    Layout::removeSplitViews(layout.get());
    EXPECT_EQ(text(*layout), "Root(Browser A )");
    EXPECT_EQ(layout->childByName(L"A", false)->canvas(), first);
    EXPECT_EQ(layout->childByName(L"A", false)->placement(), EPlacement::Right);
}

TEST_F(LayoutTest, EveryChangeOfAnAreaIsToldAtTheRoot)
{
    auto layout = load(kForms);
    int changes = 0;
    layout->onChange([&] { ++changes; });
    Area* browser = layout->childByName(L"Browser", false);
    LayoutStrategy::activeStrategy()->show(browser);
    LayoutStrategy::activeStrategy()->show(browser);
    EXPECT_EQ(changes, 1);
    LayoutStrategy::activeStrategy()->dock(browser, EPlacement::Bottom);
    EXPECT_EQ(browser->placement(), EPlacement::Bottom);
    EXPECT_EQ(changes, 2);
    const std::unique_ptr<Area> taken = layout->removeChild(browser);
    EXPECT_EQ(taken->parent(), nullptr);
    EXPECT_EQ(layout->removeChild(browser), nullptr);
    layout->childByName(L"Canvas", true)->destroy();
    EXPECT_EQ(canvases(*layout), 0u);
}
