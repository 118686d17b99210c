#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/UI/Commands/CommandsProgram.h"

#include <array>
#include <numbers>
#include <set>

namespace {

class PrimitivesTest : public CommandsTests::WithProgram
{
protected:
    static Vs::Asset* asset() { return Vs::DocumentMgr::get()->document(0)->activeAsset(); }
    static size_t parts() { return asset()->components()->children.size(); }
    static double volume(size_t part)
    {
        Vs::Status status;
        const auto measured = Vs::bodyProperties(*asset()->components()->children[part]->body, status);
        EXPECT_TRUE(measured) << status.toString();
        return measured ? measured->volume : 0;
    }
};

TEST_F(PrimitivesTest, LinesAddPartsAtTheirPoints)
{
    answer(L"Design.New");
    answer(L"Design.Box 10 20 30");
    answer(L"Design.Cylinder 5 40 100,0,0");
    answer(L"Design.Sphere 7.5 (0,0,50)");
    answer(L"Design.Cone 10 4 20 -50,0,0");
    answer(L"Design.Cone 0 10 20");
    answer(L"Design.Cone 10 10 20");
    answer(L"Design.Torus 20 5 0,0,0 0,-3,0");
    ASSERT_EQ(parts(), 7u);
    const GkPoint3d moved = asset()->components()->children[1]->placement * GkPoint3d(0, 0, 0);
    EXPECT_DOUBLE_EQ(moved.x, 100.0);
    EXPECT_TRUE(asset()->isDirty(false));
    constexpr double kPi = std::numbers::pi;
    EXPECT_NEAR(volume(3), kPi * 20 / 3 * (100 + 40 + 16), 1e-6);
    EXPECT_NEAR(volume(4), kPi * 20 / 3 * 100, 1e-6);
    EXPECT_NEAR(volume(5), kPi * 20 * 100, 1e-6) << "of equal radii it is a cylinder";
    EXPECT_NEAR(volume(6), 2 * kPi * kPi * 20 * 25, 1e-6);
    const GkVector3d axis = asset()->components()->children[6]->placement * GkVector3d(0, 0, 1);
    EXPECT_TRUE(axis.isEqualTo({0, -1, 0})) << axis.y;
}

TEST_F(PrimitivesTest, EachPartIsOneStepToUndo)
{
    answer(L"Design.New");
    answer(L"Design.Box 1 1 1");
    answer(L"Design.Sphere 1");
    EXPECT_EQ(Vs::Transaction::undoSteps(asset()), 2u);
    ASSERT_TRUE(Vs::Transaction::undo(asset()));
    EXPECT_EQ(parts(), 1u);
    ASSERT_TRUE(Vs::Transaction::redo(asset()));
    EXPECT_EQ(parts(), 2u);
}

TEST_F(PrimitivesTest, WrongSizesAreRefusedAndAddNothing)
{
    answer(L"Design.New");
    for (const wchar_t* line : {L"Design.Box",
                                L"Design.Box 1 2",
                                L"Design.Box 0 1 1",
                                L"Design.Box -1 1 1",
                                L"Design.Box 1 1 nan",
                                L"Design.Box 1e99 1 1",
                                L"Design.Cylinder 5",
                                L"Design.Cylinder 5 inf",
                                L"Design.Sphere 0",
                                L"Design.Sphere five",
                                L"Design.Sphere 5 nowhere",
                                L"Design.Sphere 5 1,2",
                                L"Design.Sphere 1 0,0,0 2",
                                L"Design.Box 1 1 1 0,0,0 0,0,0",
                                L"Design.Cylinder 1 1 0,0,0 0,0,1 3",
                                L"Design.Cone 0 0 5",
                                L"Design.Cone 5 0 0",
                                L"Design.Cone -1 2 3",
                                L"Design.Torus 5 5",
                                L"Design.Torus 5 0"})
        EXPECT_FALSE(failure(line).empty());
    EXPECT_NE(failure(L"Design.Box 1 1 1 1e12,0,0").find(L"thousand kilometres"), std::wstring::npos);
    EXPECT_EQ(parts(), 0u);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset()), 0u);
}

TEST_F(PrimitivesTest, ADefinitionRunWithoutSizesTakesOrdinaryOnesButNotSomeOfThem)
{
    answer(L"Design.New");
    answer(L"Commands.Start BoxCommand");
    EXPECT_EQ(parts(), 1u);
    EXPECT_EQ(failure(L"Commands.Start CylinderCommand Radius=5"),
              L"Cylinder: the size Height is missing or is not a number.");
    EXPECT_EQ(failure(L"Commands.Start CylinderCommand Radius=5 Heihgt=2.5"),
              L"Cylinder has no argument \"Heihgt\". Did you mean \"Height\"?");
    EXPECT_EQ(failure(L"Commands.Start MoveCommand Components=Box1 Up=5"),
              L"Move has no argument \"Up\"; there are: Components, Dx, Dy, Dz, Commit.");
    EXPECT_EQ(parts(), 1u);
    answer(L"Commands.Start CylinderCommand Radius=5 Height=2.5 Origin=1,2,3");
    EXPECT_EQ(parts(), 2u);
}

TEST_F(PrimitivesTest, WithoutADesignThereIsNothingToAddTo)
{
    EXPECT_EQ(failure(L"Design.Box 1 1 1"),
              L"There is no active design to add to: make one with Design.New, or open a file.");
}

TEST_F(PrimitivesTest, TheSampleIsCleanAndColoured)
{
    answer(L"Design.Sample");
    EXPECT_GT(parts(), 5u);
    EXPECT_FALSE(asset()->isDirty(false));
    std::set<std::array<float, 3>> colours;
    for (const auto& part : asset()->components()->children) {
        const Vs::Colour colour = part->colour.value_or(part->body->colour());
        colours.insert({colour.r, colour.g, colour.b});
    }
    EXPECT_GE(colours.size(), 4u);
}

TEST_F(PrimitivesTest, ImportAddsTheFilesPartsToTheActiveDesign)
{
    answer(L"Design.Sample");
    answer(L"Asset.Export " + scratch(L"import.step"));
    answer(L"Document.CloseAll");
    answer(L"Design.New");
    answer(L"Commands.Start VeloraImportCommand Path=" + scratch(L"import.step"));
    EXPECT_EQ(documents(), 1u);
    EXPECT_GE(parts(), 1u);
    failure(L"Commands.Start VeloraImportCommand Path=" + scratch(L"no-such.step"));
}

} // namespace
