#include "Server/Scene/Camera.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Outermost.h"
#include "Server/Scene/Projection.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/Server/Scene/Shapes.h"

#include <algorithm>

namespace {

using Vs::Scene::Camera;
using Vs::Scene::Projection;

struct Shape
{
    const char* name;
    BBox box;
};

const Shape kShapes[] = {
    {"cube", {{-10, -10, -10}, {10, 10, 10}}},
    {"tower", {{0, 0, 0}, {5, 5, 900}}},
    {"rail", {{-2000, 30, 5}, {2000, 40, 15}}},
    {"plate far from the origin", {{1e5, 1e5, 1e5}, {1e5 + 300, 1e5 + 200, 1e5}}},
    {"wire", {{0, 0, 0}, {0, 70, 0}}},
    {"watch screw", {{0, 0, 0}, {0.3, 0.3, 0.8}}},
    {"ship", {{-2e5, -3e4, -1e4}, {2e5, 3e4, 4e4}}},
};

const GkVector3d kDirections[] = {{-1, 1, -1}, {0, 1, 0}, {0, 0, -1}, {1, 0.2, 0.1}, {-0.3, -0.2, 0.9}};

/// The window that the box' corners take on the screen, as fractions of it.
struct Covered
{
    double left = 1, right = 0, low = 1, high = 0;
    bool clipped = false;
};

Covered covered(const Camera& camera, const BBox& box, double width, double height)
{
    const Projection view(camera, width, height, box);
    Covered result;
    for (int i = 0; i < 8; ++i) {
        const GkPoint3d p =
            view.worldToScreen({i & 1 ? box.high().x : box.low().x, i & 2 ? box.high().y : box.low().y,
                                i & 4 ? box.high().z : box.low().z});
        result.left = std::min(result.left, p.x / width);
        result.right = std::max(result.right, p.x / width);
        result.low = std::min(result.low, p.y / height);
        result.high = std::max(result.high, p.y / height);
        result.clipped |= p.z < view.clipNear() || p.z > view.clipFar();
    }
    return result;
}

/// False for a line seen end on.
bool hasWidth(const Camera& camera, const BBox& box)
{
    const BBox seen = box.transformed(camera.viewMatrix());
    const GkVector3d size = seen.high() - seen.low();
    return std::max(size.x, size.y) > 1e-9 * size.z;
}

TEST(Fit, FramesEveryBoxFromEverywhereInWindowsOfEveryShape)
{
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection})
        for (const Shape& shape : kShapes)
            for (const GkVector3d& direction : kDirections)
                for (const auto& [width, height] : {std::pair(1920, 1080), {600, 600}, {300, 1400}}) {
                    SCOPED_TRACE(testing::Message()
                                 << shape.name << ", projection " << projection << ", " << width << " x "
                                 << height << ", along " << testing::PrintToString(direction));
                    Camera camera;
                    camera.projection(projection);
                    camera.look(direction, {0, 0, 1});
                    camera.fit(shape.box);
                    const Covered seen = covered(camera, shape.box, width, height);
                    EXPECT_GE(seen.left, 0);
                    EXPECT_LE(seen.right, 1);
                    EXPECT_GE(seen.low, 0);
                    EXPECT_LE(seen.high, 1);
                    EXPECT_FALSE(seen.clipped);
                    EXPECT_GT(std::min(camera.extentsWidth(), camera.extentsHeight()), 0);
                    if (!hasWidth(camera, shape.box))
                        continue;
                    // A margin, but no waste: one of the two directions is nearly filled, and the box is in
                    // the middle of both.
                    EXPECT_GT(std::max(seen.right - seen.left, seen.high - seen.low), 0.85);
                    EXPECT_LT(std::max(seen.right - seen.left, seen.high - seen.low), 0.99);
                    EXPECT_NEAR((seen.left + seen.right) / 2, 0.5, 0.02);
                    EXPECT_NEAR((seen.low + seen.high) / 2, 0.5, 0.02);
                }
}

TEST(Fit, NeitherTurnsTheCameraNorChangesItsLens)
{
    Camera camera;
    camera.orbit(77, -31);
    const GkVector3d direction = camera.direction(), up = camera.screenUp();
    const double angle = camera.perspectiveAngle();
    for (const Shape& shape : kShapes) {
        camera.fit(shape.box);
        EXPECT_TRUE(camera.direction().isEqualTo(direction, {1e-6, 1e-7})) << shape.name;
        EXPECT_TRUE(camera.screenUp().isEqualTo(up, {1e-6, 1e-7})) << shape.name;
        EXPECT_NEAR(camera.perspectiveAngle(), angle, 1e-3) << shape.name;
    }
}

TEST(Fit, DoneTwiceChangesNothingMore)
{
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection}) {
        Camera camera;
        camera.projection(projection);
        camera.fit(kShapes[0].box);
        const double width = camera.extentsWidth();
        const GkPoint3d position = camera.position();
        camera.fit(kShapes[0].box);
        EXPECT_NEAR(camera.extentsWidth(), width, width * 1e-6);
        EXPECT_LT(camera.position().distanceTo(position), 1e-3);
    }
}

/// A ball and a rod, rotated and moved, in a canvas whose left and lower parts are covered.
class Content : public Vs::Scene::CameraSubject
{
public:
    explicit Content(Room room) : m_room(room)
    {
        using Rendra::Graphics::BodyNode;
        add(BodyNode::make(Shapes::ball(10), Vs::Colour()), GkMatrix3d::translation({30, 5, -4}));
        add(BodyNode::make(Shapes::cylinder(1, 80), Vs::Colour()),
            GkMatrix3d::rotation(0.7, {1, 2, 0}, {}) * GkMatrix3d::translation({0, 0, -20}));
        auto hidden = BodyNode::make(Shapes::box(900, 900, 900), Vs::Colour());
        Vs::Scene::NodeChange(hidden.get()).visible(false);
        add(hidden, {});
    }
    BBox box() const { return m_root->boundingBox(); }
    const std::vector<GkPoint3d>& points() const { return m_points; }

    Room roomFor(double) const override { return m_room; }
    bool outermost(const BBox& box, const GkVector3d& direction, GkPoint3d& point) const override
    {
        if (!box.low().isEqualTo(this->box().low()))
            return false;
        point = *Vs::Scene::outermostPoint(*m_root, direction);
        return true;
    }

private:
    void add(Vs::StrongRef<Rendra::Graphics::BodyNode> node, const GkMatrix3d& place)
    {
        Vs::Scene::NodeChange(node.get()).transform(place);
        Vs::Scene::NodeChange(m_root.get()).add(node);
        const std::vector<float>& all = node->mesh()->positions;
        for (size_t i = 0; node->visible() && i < all.size(); i += 3)
            m_points.push_back(place * GkPoint3d(all[i], all[i + 1], all[i + 2]));
    }

    Room m_room;
    Vs::StrongRef<Rendra::Graphics::GroupNode> m_root = Rendra::Graphics::GroupNode::make();
    std::vector<GkPoint3d> m_points; ///< Of what is visible.
};

TEST(Fit, FramesThePointsOfTheContentInThePartOfTheCanvasThatIsFree)
{
    for (const Vs::Scene::CameraSubject::Room& room : {Vs::Scene::CameraSubject::Room{},
                                                       {1200, 800, -300, -340, 600, 400},
                                                       {500, 900, -250, 100, 250, 300}})
        for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection})
            for (const GkVector3d& direction : kDirections) {
                SCOPED_TRACE(testing::Message() << room.width << " wide, projection " << projection
                                                << ", along " << testing::PrintToString(direction));
                const bool isFree = room.width == 0;
                const double width = isFree ? 700 : room.width, height = isFree ? 700 : room.height;
                const auto content = std::make_shared<Content>(room);
                Camera camera;
                camera.projection(projection);
                camera.look(direction, {0, 0, 1});
                const double angle = camera.perspectiveAngle();
                camera.subject(content);
                camera.fit(content->box());
                const Projection view(camera, width, height);
                BBox seen; // As fractions of the free part, from its lower left corner.
                for (const GkPoint3d& point : content->points()) {
                    const GkPoint3d p = view.worldToScreen(point);
                    seen.add(isFree
                                 ? GkPoint3d(p.x / width, p.y / height, 0)
                                 : GkPoint3d((p.x - width / 2 - room.left) / (room.right - room.left),
                                             (p.y - height / 2 - room.bottom) / (room.top - room.bottom), 0));
                }
                EXPECT_GT(std::min(seen.low().x, seen.low().y), 0);
                EXPECT_LT(std::max(seen.high().x, seen.high().y), 1);
                EXPECT_NEAR(seen.centre().x, 0.5, 0.01);
                EXPECT_NEAR(seen.centre().y, 0.5, 0.01);
                // One of the two directions is filled except for the margin.
                const GkVector3d size = seen.high() - seen.low();
                EXPECT_NEAR(std::max(size.x, size.y), 1 / 1.06, 0.005);
                EXPECT_NEAR(camera.perspectiveAngle(), angle, 2e-3);
            }
}

TEST(Fit, GivesUpThePivot)
{
    Camera camera;
    camera.pivot({1, 2, 3});
    camera.pivotEnabled(true);
    camera.fit(BBox());
    EXPECT_TRUE(camera.pivotEnabled());
    camera.fit(kShapes[0].box);
    EXPECT_FALSE(camera.pivotEnabled());
}

TEST(Fit, BringsAPointToTheMiddleWithoutZoomingIntoNothing)
{
    Camera camera;
    const double width = camera.extentsWidth();
    camera.fit({{5, 6, 7}, {5, 6, 7}});
    EXPECT_TRUE(isNear(camera.target(), {5, 6, 7}));
    EXPECT_EQ(camera.extentsWidth(), width);
}

} // namespace
