// Distances from a plate that is full of holes, whose wide faces have a separate algorithm.

#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Tests/Server/DataModel/KernelShapes.h"
#include "Tests/Server/DataModel/Measure/Measures.h"
#include "Tests/Support/Seed.h"

#include <numbers>
#include <random>

using namespace Vs;
using KernelShapes::Hole;
using KernelShapes::Placed;

namespace {

class MeasurePlateTest : public MeasuresTest
{
protected:
    void SetUp() override
    {
        asset = newAsset();
        ModelBuilder builder(asset);
        CombineEdit drill{
            CombineEdit::Kind::Subtract, builder.box(100, 100, 4, {{}, L"Plate", {}}, status)->id, {}};
        for (int i = 0; i < 64; ++i) {
            holes.push_back({6.0 + 12 * (i % 8), 6.0 + 12 * (i / 8), 0.5 + 0.07 * i});
            drill.tools.push_back(
                builder
                    .cylinder(holes.back().radius, 10,
                              {GkMatrix3d::translation({holes.back().x, holes.back().y, -3}), L"Drill", {}},
                              status)
                    ->id);
        }
        EditRequest* request = EditRequest::make(asset, L"Drill", drill);
        ASSERT_TRUE(request->execute(asset, status)) << Strings::narrow(status.toString());
        request->destroy();
    }

    void add(const Placed& placed, const std::wstring& name)
    {
        ModelBuilder builder(asset);
        const auto& [kind, sizes, place] = placed;
        if (kind == Placed::Kind::Box)
            builder.box(sizes[0], sizes[1], sizes[2], {place, name, {}}, status);
        else if (kind == Placed::Kind::Cylinder)
            builder.cylinder(sizes[0], sizes[1], {place, name, {}}, status);
        else
            builder.sphere(sizes[0], {place, name, {}}, status);
    }

    std::vector<Hole> holes;
};

/// Things over, under, beside and in the plate, upright and tilted.
class Anything
{
public:
    explicit Anything(unsigned seed) : m_random(seed) {}

    Placed placed(const std::vector<Hole>& holes)
    {
        const Hole& hole = holes[size_t(between(0, 63))];
        switch (int(between(0, 5))) {
        case 0: // a lead in its hole
            return {Placed::Kind::Cylinder,
                    {hole.radius * between(0.3, 0.95), between(3, 20), 0},
                    GkMatrix3d::translation({hole.x, hole.y, between(-6, 2)})};
        case 1: // one that is tilted
            return {Placed::Kind::Cylinder,
                    {hole.radius * between(0.1, 0.5), between(3, 20), 0},
                    GkMatrix3d::translation({hole.x, hole.y, between(-6, 2)}) * turned(0.3)};
        case 2: // flat on the plate, or just above it
            return {Placed::Kind::Box,
                    {between(0.1, 30), between(0.1, 30), between(0.1, 9)},
                    GkMatrix3d::translation(
                        {between(-40, 110), between(-40, 110), between(0, 1) < 0.5 ? 4 : 4.5})};
        default:
            return {Placed::Kind(int(between(0, 3))),
                    {between(0.2, 12), between(0.2, 12), between(0.2, 12)},
                    GkMatrix3d::translation({between(-30, 130), between(-30, 130), between(-25, 25)}) *
                        turned(std::numbers::pi)};
        }
    }

private:
    double between(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(m_random);
    }
    GkMatrix3d turned(double most)
    {
        return GkMatrix3d::rotation(between(-most, most),
                                    GkVector3d(between(-1, 1), between(-1, 1), between(-1, 1)).normal());
    }

    std::mt19937 m_random;
};

} // namespace

TEST_F(MeasurePlateTest, DistancesAreThoseOfTheKernelsSearchOverAllParts)
{
    Anything anything(TestSupport::seed());
    std::vector<Placed> others;
    for (int i = 0; i < 40; ++i)
        others.push_back(anything.placed(holes));
    const std::vector<double> expected = KernelShapes::distancesFromPlate(holes, others);
    for (size_t i = 0; i < others.size(); ++i) {
        const std::wstring name = L"Thing" + std::to_wstring(i);
        add(others[i], name);
        SCOPED_TRACE(testing::Message() << "seed " << TestSupport::seed() << ", thing " << i << " of kind "
                                        << int(others[i].kind));
        MeasureResult result;
        ASSERT_TRUE(measure({L"Plate", name}, EMeasureType::Distance, result)) << why;
        EXPECT_NEAR(result.value, expected[i], 1e-7);
        EXPECT_NEAR(result.point1.distanceTo(result.point2), result.value, 1e-6);
        EXPECT_NEAR(value({name, L"Plate"}, EMeasureType::Distance), expected[i], 1e-7);
    }
}
