#include "Server/Base/Progress.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PartHistory.h"
#include "Tests/Server/DataModel/Edit/EditFixture.h"
#include "Tests/Support/RealData.h"

#include <atomic>
#include <cmath>
#include <limits>
#include <numbers>
#include <thread>

namespace {

using std::numbers::pi;
using Kind = Vs::CombineEdit::Kind;
using Blend = Vs::BlendEdit::Kind;
using Leaf = Vs::ObjectPath::Leaf;

class EditSolidsTest : public EditTest
{
protected:
    void SetUp() override
    {
        asset = newAsset();
        ASSERT_NE(asset, nullptr);
    }

    std::string box(double dx, double dy, double dz, const GkVector3d& at, const wchar_t* name)
    {
        const Vs::Component* made = Vs::ModelBuilder(asset).box(
            dx, dy, dz, {GkMatrix3d::translation(at), name, Vs::Colour{1, 0, 0, 1}}, status);
        return made ? made->id : std::string();
    }
    std::string cylinder(double radius, double height, const GkVector3d& at)
    {
        const Vs::Component* made = Vs::ModelBuilder(asset).cylinder(
            radius, height, {GkMatrix3d::translation(at), L"Pin", {}}, status);
        return made ? made->id : std::string();
    }
    double volumeOf(const std::string& id)
    {
        const Vs::Component* component = asset->findComponent(id);
        const auto properties = component && component->body ? Vs::bodyProperties(*component->body, status)
                                                             : std::optional<Vs::BodyProperties>();
        EXPECT_TRUE(properties) << id;
        return properties ? properties->volume : 0;
    }
    size_t facesOf(const std::string& id) { return asset->findComponent(id)->body->mesh()->faces.size(); }
    static std::vector<Vs::ObjectPath> edges(const std::string& id, std::initializer_list<uint32_t> numbers)
    {
        std::vector<Vs::ObjectPath> paths;
        for (const uint32_t number : numbers)
            paths.push_back({id, Leaf::Edge, number});
        return paths;
    }
    void expectRefused(const Vs::ModelEdit& change, const std::string& reason)
    {
        const std::string text = refusal(*asset, change);
        EXPECT_NE(text.find(reason), std::string::npos) << text;
    }

    Vs::Asset* asset = nullptr;
};

TEST_F(EditSolidsTest, BodiesThatOverlapAreJoinedSubtractedAndIntersected)
{
    constexpr double kCommon = 5 * 10 * 10;
    const std::pair<Kind, double> cases[] = {
        {Kind::Join, 2000 + 1000 - kCommon}, {Kind::Subtract, 2000 - kCommon}, {Kind::Intersect, kCommon}};
    for (const auto& [kind, volume] : cases) {
        const std::string target = box(20, 10, 10, {}, L"Target");
        const std::string tool = box(10, 10, 10, {15, 0, 0}, L"Tool");
        const std::string other = box(1, 2, 3, {0, 0, 90}, L"Other");
        edit(*asset, Vs::CombineEdit{kind, target, {tool}});
        EXPECT_NEAR(volumeOf(target), volume, 1e-6 * volume);
        EXPECT_EQ(asset->findComponent(tool), nullptr);
        EXPECT_EQ(asset->findComponent(target)->name, L"Target");
        EXPECT_EQ(asset->findComponent(target)->body->colour(), (Vs::Colour{1, 0, 0, 1}));
        EXPECT_NEAR(volumeOf(other), 6, 1e-9);
        if (kind == Kind::Join) {
            EXPECT_EQ(facesOf(target), 6u); // no seam where they lie flush
        }
    }
}

TEST_F(EditSolidsTest, ADrilledPlateAndAPinOnAnyPlaceOfTheTreeMeasureAsTheyShould)
{
    const std::string plate = box(40, 40, 10, {100, 0, 0}, L"Plate");
    const std::string pin = cylinder(5, 30, {120, 20, -10});
    const std::string second = cylinder(5, 30, {120, 20, 200});
    edit(*asset, Vs::MoveEdit{{second}, GkMatrix3d::translation({-12, 0, -210})});
    edit(*asset, Vs::CombineEdit{Kind::Subtract, plate, {pin, second}, true});
    EXPECT_NEAR(volumeOf(plate), 16000 - 2 * pi * 25 * 10, 0.02);
    EXPECT_NEAR(volumeOf(pin), pi * 25 * 30, 0.01);
    edit(*asset, Vs::CombineEdit{Kind::Join, plate, {pin}});
    EXPECT_NEAR(volumeOf(plate), 16000 - pi * 25 * 10 + pi * 25 * 20, 0.03);
}

TEST_F(EditSolidsTest, BodiesThatTouchOrCoincideAreTakenForWhatTheyAre)
{
    const std::string a = box(10, 10, 10, {}, L"A");
    const std::string flush = box(10, 10, 10, {10, 0, 0}, L"Flush");
    const std::string corner = box(10, 10, 10, {-10, -10, -10}, L"Corner");
    const std::string same = box(10, 10, 10, {}, L"Same");
    expectRefused(Vs::CombineEdit{Kind::Subtract, a, {flush}}, "don't overlap");
    expectRefused(Vs::CombineEdit{Kind::Intersect, a, {flush}}, "don't overlap");
    expectRefused(Vs::CombineEdit{Kind::Intersect, a, {corner}}, "don't overlap");
    expectRefused(Vs::CombineEdit{Kind::Subtract, a, {same}}, "nothing would be left of \"A\"");
    edit(*asset, Vs::CombineEdit{Kind::Intersect, a, {same}});
    EXPECT_NEAR(volumeOf(a), 1000, 1e-6);
    edit(*asset, Vs::CombineEdit{Kind::Join, a, {flush}});
    EXPECT_NEAR(volumeOf(a), 2000, 1e-6);
    EXPECT_EQ(facesOf(a), 6u);
    edit(*asset, Vs::CombineEdit{Kind::Join, a, {corner}});
    EXPECT_NEAR(volumeOf(a), 3000, 1e-6);
}

/// The revision that a changed body had before the last change.
class Reshapes : public Vs::AssetEventSite
{
public:
    Reshapes() { Vs::AssetEventSource::get()->subscribe(this); }
    ~Reshapes() override { Vs::AssetEventSource::get()->unsubscribe(this); }
    void assetComponentsChanged(Vs::ComponentsEvent* event) override
    {
        m_last = Vs::reshapedBodies(*event->asset());
    }
    uint64_t before(const std::string& component) const
    {
        for (const auto& each : m_last)
            if (each.component == component)
                return each.before;
        ADD_FAILURE() << "no other shape of " << component;
        return 0;
    }

private:
    std::vector<Vs::ReshapedBody> m_last;
};

TEST_F(EditSolidsTest, PartsOfAChangedBodyAreFoundAgainOrGivenUp)
{
    const auto middleOf = [&](const Vs::ObjectPath& part) {
        Vs::MeasureResult result;
        EXPECT_TRUE(Vs::MeasureMgr::get()->measure(
            Vs::makeStrong<Vs::LogicalSelection>(asset, part, Vs::StrongRef<Vs::Selection>()),
            Vs::EMeasureType::PositionX, result, &status));
        return result.point1;
    };
    const auto middles = [&](const std::string& id, Leaf leaf, uint32_t count) {
        std::vector<GkPoint3d> places;
        for (uint32_t i = 0; i < count; ++i)
            places.push_back(middleOf({id, leaf, i}));
        return places;
    };
    const Reshapes reshapes;
    const std::string plate = box(40, 40, 10, {}, L"Plate");
    const std::string pin = cylinder(5, 30, {20, 20, -10});
    const auto faces = middles(plate, Leaf::Face, 6), edges = middles(plate, Leaf::Edge, 12);
    const auto expectFound = [&] {
        for (uint32_t i = 0; i < 12; ++i) {
            const auto face = Vs::successorOf({plate, Leaf::Face, i}, reshapes.before(plate), *asset);
            const auto edge = Vs::successorOf({plate, Leaf::Edge, i}, reshapes.before(plate), *asset);
            ASSERT_TRUE(edge && (face || i >= 6)) << i;
            EXPECT_LT(middleOf(*edge).distanceTo(edges[i]), 1e-6) << "edge " << i;
            if (i < 6) {
                EXPECT_LT(middleOf(*face).distanceTo(faces[i]), 1e-6) << "face " << i;
            }
        }
    };
    edit(*asset, Vs::CombineEdit{Kind::Subtract, plate, {pin}});
    expectFound();
    ASSERT_EQ(facesOf(plate), 7u);
    const auto drilled = middles(plate, Leaf::Face, 7);
    ASSERT_TRUE(Vs::Transaction::undo(asset));
    size_t back = 0;
    for (uint32_t i = 0; i < 7; ++i)
        if (const auto face = Vs::successorOf({plate, Leaf::Face, i}, reshapes.before(plate), *asset)) {
            EXPECT_LT(middleOf(*face).distanceTo(drilled[i]), 1e-6);
            ++back;
        }
    EXPECT_EQ(back, 6u) << "the hole's own face came of none";
    // A colour changes no number.
    edit(*asset, Vs::ColourEdit{{{plate, Leaf::Face, 3}}, Vs::Colour{0, 1, 0, 1}});
    expectFound();
    // A rounded edge no longer exists; the others stay in place, or get a little shorter.
    edit(*asset, Vs::BlendEdit{Blend::Fillet, {{plate, Leaf::Edge, 4}}, 1});
    EXPECT_FALSE(Vs::successorOf({plate, Leaf::Edge, 4}, reshapes.before(plate), *asset));
    size_t found = 0;
    for (uint32_t i = 0; i < 12; ++i)
        if (const auto edge = Vs::successorOf({plate, Leaf::Edge, i}, reshapes.before(plate), *asset)) {
            EXPECT_LE(middleOf(*edge).distanceTo(edges[i]), 0.5 + 1e-6) << "edge " << i;
            ++found;
        }
    EXPECT_EQ(found, 11u);
    EXPECT_FALSE(Vs::successorOf({pin, Leaf::Face, 0}, 1, *asset)) << "it went into the hole";
}

TEST_F(EditSolidsTest, WhatCantBeCombinedIsNamed)
{
    const std::string a = box(10, 10, 10, {}, L"A");
    expectRefused(Vs::CombineEdit{Kind::Join, a, {a}}, "\"A\" can't be combined with itself");
    expectRefused(Vs::CombineEdit{Kind::Join, a, {}}, "no object of this model");
    expectRefused(Vs::CombineEdit{Kind::Join, a, {"0:1:1:99"}}, "no longer");
    SKIP_WITHOUT_REAL_DATA();
    const auto folder = TestSupport::realDataFolder();
    Vs::Document* document = open((folder / "as1-oc-214.stp").wstring());
    ASSERT_NE(document, nullptr);
    asset = document->activeAsset();
    const std::string plate = partNamed(*asset, L"plate_1")->id;
    const std::string assembly = asset->components()->children.front()->id;
    expectRefused(Vs::CombineEdit{Kind::Join, assembly, {plate}}, "is an assembly");
    expectRefused(Vs::CombineEdit{Kind::Join, plate, {assembly}}, "itself");
    document = open((folder / "head.stl").wstring());
    ASSERT_NE(document, nullptr);
    asset = document->activeAsset();
    const std::string head = componentsOf(*asset).back()->id;
    expectRefused(Vs::CombineEdit{Kind::Join, head, {box(1, 1, 1, {}, L"B")}}, "triangles");
}

TEST_F(EditSolidsTest, RoundedAndCutEdgesMeasureAsTheirFormulasSay)
{
    constexpr double a = 20, r = 3;
    const std::string one = box(a, a, a, {5, 5, 5}, L"One");
    edit(*asset, Vs::BlendEdit{Blend::Fillet, edges(one, {4}), r});
    EXPECT_NEAR(volumeOf(one), a * a * a - (1 - pi / 4) * r * r * a, 1e-3);
    EXPECT_EQ(asset->findComponent(one)->name, L"One");

    const std::string all = box(a, a, a, {50, 0, 0}, L"All");
    edit(*asset, Vs::BlendEdit{Blend::Fillet, edges(all, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), r});
    constexpr double b = a - 2 * r;
    EXPECT_NEAR(volumeOf(all), b * b * b + 6 * b * b * r + 3 * pi * b * r * r + 4 * pi * r * r * r / 3, 2e-3);
    EXPECT_EQ(facesOf(all), 26u);

    const std::string cut = box(a, a, a, {100, 0, 0}, L"Cut");
    edit(*asset, Vs::BlendEdit{Blend::Chamfer, edges(cut, {7}), r});
    EXPECT_NEAR(volumeOf(cut), a * a * a - r * r * a / 2, 1e-6);

    const std::string pin = cylinder(10, 30, {150, 0, 0});
    edit(*asset, Vs::BlendEdit{Blend::Fillet, edges(pin, {0}), r});
    const double area = (1 - pi / 4) * r * r, inset = r * (10 - 3 * pi) / (12 - 3 * pi);
    EXPECT_NEAR(volumeOf(pin), pi * 100 * 30 - 2 * pi * (10 - inset) * area, 1e-2);
}

TEST_F(EditSolidsTest, SizesWithoutRoomAndEdgesThatArentThereAreRefused)
{
    const std::string id = box(20, 20, 20, {}, L"Cube");
    for (const auto kind : {Blend::Fillet, Blend::Chamfer}) {
        expectRefused(Vs::BlendEdit{kind, edges(id, {0}), 25}, "no room");
        expectRefused(Vs::BlendEdit{kind, edges(id, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), 10.5},
                      "no room");
        expectRefused(Vs::BlendEdit{kind, edges(id, {12}), 1}, "Edge13");
        for (const double size : {0.0, -1.0, 1e9, std::numeric_limits<double>::quiet_NaN()})
            expectRefused(Vs::BlendEdit{kind, edges(id, {0}), size}, "a length from");
        expectRefused(Vs::BlendEdit{kind, {{id, Leaf::Face, 0}}, 1}, "no such edge");
        expectRefused(Vs::BlendEdit{kind, {}, 1}, "no object");
    }
}

TEST_F(EditSolidsTest, WhatTakesLongIsCancelledAndCanBeDoneAfterwards)
{
    const std::string plate = box(200, 200, 2, {0, 0, 0}, L"Plate");
    constexpr int kRows = 9;
    std::vector<std::string> pins;
    for (int i = 0; i < kRows * kRows; ++i)
        pins.push_back(cylinder(3, 10, {10.0 + 15 * (i % kRows), 10.0 + 15 * (i / kRows), -5}));
    /// Requests a stop as soon as somebody listens, like Ctrl-C.
    const auto cancelled = [&](const Vs::ModelEdit& change) {
        std::atomic<bool> over = false;
        std::thread impatient([&] {
            while (!over)
                if (Vs::Progress::active() && !Vs::Progress::cancelled())
                    Vs::Progress::requestCancel();
        });
        expectRefused(change, "cancelled");
        over = true;
        impatient.join();
    };
    const Vs::CombineEdit drill{Kind::Subtract, plate, pins};
    cancelled(drill);
    edit(*asset, drill);
    ASSERT_EQ(facesOf(plate), 6u + pins.size());
    // The kernel doesn't check for cancellation here.
    Vs::BlendEdit round{Blend::Fillet, {}, 0.1};
    const auto& lines = asset->findComponent(plate)->body->mesh()->edgeStarts;
    for (uint32_t i = 0; i + 1 < lines.size(); ++i)
        round.edges.push_back({plate, Leaf::Edge, i});
    const auto threads = [] {
        using boost::filesystem::directory_iterator;
        return std::distance(directory_iterator("/proc/self/task"), directory_iterator());
    };
    const auto before = threads();
    cancelled(round);
    EXPECT_EQ(threads(), before) << "it is left standing";
    EXPECT_NEAR(volumeOf(plate), 2 * (200 * 200 - double(pins.size()) * 9 * pi), 1e-2);
}

TEST_F(EditSolidsTest, EdgesAtWhichFacesGoOverIntoEachOtherAreRefused)
{
    const std::string id = box(20, 20, 20, {}, L"Cube");
    edit(*asset, Vs::BlendEdit{Blend::Fillet, edges(id, {0}), 3});
    int smooth = 0;
    for (uint32_t edge = 0; edge < asset->findComponent(id)->body->mesh()->edgeStarts.size() - 1; ++edge) {
        Vs::Status own;
        Vs::EditRequest* request =
            Vs::EditRequest::make(asset, L"Edit", Vs::BlendEdit{Blend::Fillet, edges(id, {edge}), 0.1});
        if (request->execute(asset, own))
            EXPECT_TRUE(Vs::Transaction::undo(asset));
        else
            smooth += own.toString().find(L"smoothly") != std::wstring::npos;
        request->destroy();
    }
    EXPECT_EQ(smooth, 2);
}

TEST_F(EditSolidsTest, ABodyChangesWhereverItOccursUnlessItIsItsOwnTool)
{
    const std::string original = box(20, 20, 20, {}, L"Cube");
    const std::string copy = edit(*asset, Vs::CopyEdit{{original}, {GkMatrix3d::translation({10, 0, 0})}})[0];
    edit(*asset, Vs::BlendEdit{Blend::Chamfer, edges(copy, {0}), 2});
    EXPECT_EQ(asset->findComponent(original)->body, asset->findComponent(copy)->body);
    EXPECT_NEAR(volumeOf(original), 8000 - 40, 1e-6);
    edit(*asset, Vs::CombineEdit{Kind::Subtract, original, {copy}, true});
    EXPECT_NEAR(volumeOf(copy), 8000 - 40, 1e-6);
    EXPECT_LT(volumeOf(original), 4100);
}

TEST_F(EditSolidsTest, ColoursAreOfComponentsBodiesAndFacesAndOutliveOtherChanges)
{
    const Vs::Colour blue{0, 0, 1, 1}, green{0, 1, 0, 1};
    const std::string id = box(20, 20, 20, {3, 0, 0}, L"Cube");
    const std::string copy = edit(*asset, Vs::CopyEdit{{id}, {GkMatrix3d::translation({50, 0, 0})}})[0];
    const auto painted = [&](const Vs::Colour& colour) {
        const auto mesh = asset->findComponent(id)->body->mesh();
        return std::count_if(mesh->faces.begin(), mesh->faces.end(), [&](const Vs::BodyMesh::Face& face) {
            return face.colour >= 0 && mesh->colours[size_t(face.colour)] == colour;
        });
    };
    edit(*asset, Vs::ColourEdit{{{copy}}, green});
    EXPECT_EQ(asset->findComponent(copy)->colour, green);
    EXPECT_FALSE(asset->findComponent(id)->colour);
    edit(*asset, Vs::ColourEdit{{{id, Leaf::Body, 0}}, blue});
    EXPECT_EQ(asset->findComponent(copy)->body->colour(), blue);
    edit(*asset, Vs::ColourEdit{{{id, Leaf::Face, 2}, {id, Leaf::Face, 3}}, green});
    EXPECT_EQ(painted(green), 2);
    edit(*asset, Vs::BlendEdit{Blend::Fillet, edges(id, {0, 5}), 2});
    EXPECT_EQ(painted(green), 2);
    const std::string pin = cylinder(3, 50, {13, 10, -5});
    edit(*asset, Vs::ColourEdit{{{pin, Leaf::Face, 0}}, blue});
    edit(*asset, Vs::CombineEdit{Kind::Subtract, id, {pin}});
    EXPECT_EQ(painted(green), 2);
    EXPECT_GE(painted(blue), 1); // the wall of the hole
    edit(*asset, Vs::ColourEdit{{{copy}}, {}});
    EXPECT_FALSE(asset->findComponent(copy)->colour);
    const auto before = painted(blue);
    edit(*asset, Vs::NestEdit{{box(5, 5, 5, {100, 0, 0}, L"Second")}, copy});
    edit(*asset, Vs::ColourEdit{{{id, Leaf::Solid, 1}}, blue});
    EXPECT_EQ(painted(blue), before + 6) << "all faces of the solid, and none of the other's";
    EXPECT_EQ(painted(green), 2);
    expectRefused(Vs::ColourEdit{{{id, Leaf::Face, 99}}, blue}, "Face100");
    expectRefused(Vs::ColourEdit{{{id, Leaf::Edge, 0}}, blue}, "no such");
    expectRefused(Vs::ColourEdit{{{id}}, Vs::Colour{2, 0, 0, 1}}, "0 to 1");
}

TEST_F(EditSolidsTest, MirrorImagesAreSoundBodiesOnTheOtherSide)
{
    const std::string id = box(10, 20, 30, {5, 0, 0}, L"Part");
    edit(*asset, Vs::BlendEdit{Blend::Chamfer, edges(id, {0}), 4});
    edit(*asset, Vs::ColourEdit{{{id, Leaf::Face, 1}}, Vs::Colour{0, 0, 1, 1}});
    const double volume = volumeOf(id);
    const std::string image = edit(*asset, Vs::MirrorEdit{{id}, {0, 0, 0}, {1, 0, 0}})[0];
    EXPECT_NEAR(volumeOf(image), volume, 1e-6 * volume);
    const Vs::Component* component = asset->findComponent(image);
    EXPECT_EQ(component->name, L"Part");
    EXPECT_EQ(component->body->mesh()->colours.size(), 1u);
    const BBox bounds = component->body->mesh()->bounds.transformed(component->placement);
    EXPECT_NEAR(bounds.low().x, -15, 1e-4);
    EXPECT_NEAR(bounds.high().x, -5, 1e-4);
    edit(*asset, Vs::CombineEdit{Kind::Join, image, {box(10, 20, 30, {-12, 0, 0}, L"More")}});
    edit(*asset, Vs::MirrorEdit{{id}, {0, 0, 15}, {0, 1, 1}, false});
    EXPECT_EQ(asset->findComponent(id), nullptr);
    expectRefused(Vs::MirrorEdit{{image}, {}, {0, 0, 0}}, "direction");
}

TEST_F(EditSolidsTest, ARealAssemblyIsMirroredRoundedAndDrilled)
{
    SKIP_WITHOUT_REAL_DATA();
    Vs::Document* document = open((TestSupport::realDataFolder() / "as1-oc-214.stp").wstring());
    ASSERT_NE(document, nullptr);
    asset = document->activeAsset();
    const std::string root = asset->components()->children.front()->id;
    const std::string plate = partNamed(*asset, L"plate_1")->id;
    const double plateBefore = volumeOf(plate);
    edit(*asset, Vs::BlendEdit{Blend::Fillet, edges(plate, {0}), 1});
    EXPECT_NE(volumeOf(plate), plateBefore);
    EXPECT_NEAR(volumeOf(plate), plateBefore, 0.01 * plateBefore);
    const double whole = ::volumeOf(*asset);
    edit(*asset, Vs::MirrorEdit{{root}, {500, 0, 0}, {1, 0, 0}});
    EXPECT_NEAR(::volumeOf(*asset), 2 * whole, 1e-6 * whole);
    EXPECT_EQ(asset->components()->children.size(), 2u);
    const GkPoint3d at = originOf(*asset, plate);
    const std::string pin = cylinder(4, 1000, {at.x + 60, at.y + 75, at.z - 500});
    edit(*asset, Vs::CombineEdit{Kind::Subtract, plate, {pin}});
    EXPECT_LT(volumeOf(plate), plateBefore);
}

} // namespace
