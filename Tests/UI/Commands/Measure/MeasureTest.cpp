#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Types/LengthUnit.h"
#include "Tests/UI/Commands/CommandsProgram.h"

namespace {

class MeasureLines : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        answer(L"Design.New");
        answer(L"Design.Box 10 20 30");
        answer(L"Design.Sphere 5 0,0,100");
        answer(L"Design.Sphere 5 0,0,130");
    }
    void TearDown() override
    {
        Vs::LengthUnit::display(*Vs::LengthUnit::find("mm"));
        WithProgram::TearDown();
    }
};

TEST_F(MeasureLines, TellValuesWithTheUnitThatTheUserSees)
{
    EXPECT_EQ(answer(L"Measure.Volume \"Box1\""), L"6000 mm³");
    EXPECT_EQ(answer(L"Measure.Area \"Box1:1/Body1\""), L"2200 mm²");
    EXPECT_EQ(answer(L"Measure.Radius \"Sphere1/Face1\""), L"5 mm");
    EXPECT_EQ(answer(L"Measure.Position \"Sphere2/Face1\""), L"0 mm, 0 mm, 130 mm");
    EXPECT_EQ(answer(L"Measure.Distance \"Sphere1\" \"Sphere2\""), L"20 mm");
    EXPECT_EQ(answer(L"Measure.Delta \"Sphere2\" \"Sphere1\""), L"0 mm, 0 mm, -20 mm");
    EXPECT_EQ(answer(L"Measure.Angle \"Box1/Face1\" \"Box1/Face3\""), L"90°");
    EXPECT_EQ(answer(L"Measure.Angle \"Sphere1\" \"Box1/Vertex1\" \"Sphere2\"").back(), L'°');
    answer(L"Design.Unit cm");
    EXPECT_EQ(answer(L"Measure.Volume \"Box1\""), L"6 cm³");
    answer(L"Design.Unit in");
    EXPECT_EQ(answer(L"Measure.Radius \"Sphere1/Face1\""), L"0.197 in");
    EXPECT_EQ(answer(L"Measure.Radius \"Sphere1/Face1\" /Exact").substr(0, 10), L"0.19685039");
}

TEST_F(MeasureLines, TellWhatIsWrong)
{
    EXPECT_NE(failure(L"Measure.Volume").find(L"Usage: Measure.Volume <path>"), std::wstring::npos);
    EXPECT_NE(failure(L"Measure.Distance \"Box1\"").find(L"Usage"), std::wstring::npos);
    const std::wstring unknown = failure(L"Measure.Volume Nothing");
    EXPECT_NE(unknown.find(L"there is no \"Nothing\" in the model. There are: Box1:1, "), std::wstring::npos)
        << Vs::Strings::narrow(unknown);
    EXPECT_NE(failure(L"Measure.Length \"Box1/Face1\"").find(L"a plane has no length"), std::wstring::npos);
    Vs::DocumentMgr::get()->document(0u)->activeAsset()->markClean();
    answer(L"VuCommands.CloseAllDocumentsCmd");
    EXPECT_NE(failure(L"Measure.Volume \"Box1\"").find(L"no active model"), std::wstring::npos);
}

} // namespace
