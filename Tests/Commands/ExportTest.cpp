#include "Server/DataModel/Asset.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Commands/CommandsProgram.h"
#include "UI/Base/Command/UsageEvents.h"
#include "UI/Base/UIBaseOptionGroup.h"

#include <boost/filesystem/operations.hpp>

namespace {

class ExportTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        answer(L"Design.Sample");
    }
};

TEST_F(ExportTest, ASampleBecomesAFileThatCanBeOpenedAgain)
{
    answer(L"Asset.Export " + scratch(L"sample.stl"));
    EXPECT_GT(boost::filesystem::file_size(scratch(L"sample.stl")), 10000u);
    answer(L"VuCommands.ExportCmd " + scratch(L"sample.step"));
    answer(L"Document.Open " + scratch(L"sample.step"));
    EXPECT_EQ(documents(), 2u);
}

TEST_F(ExportTest, CoarseFilesAreSmallerThanFineOnes)
{
    const auto size = [this](int tessellation) {
        const std::wstring path = scratch(L"t" + std::to_wstring(tessellation) + L".stl");
        answer(L"Commands.Start ExportCommand Path=" + path + L" Tesselletion=" +
               std::to_wstring(tessellation));
        return boost::filesystem::file_size(path);
    };
    const auto ordinary = size(3);
    EXPECT_LT(size(1), size(2));
    EXPECT_EQ(size(0), ordinary);
}

TEST_F(ExportTest, OnlySixSuffixesPassAndOnlyInLowerCase)
{
    for (const wchar_t* name : {L"model.STL", L"model", L"model.png", L"model.stl.", L"folder.stl/model"}) {
        answerBoxes(0);
        EXPECT_EQ(failure(L"Asset.Export " + scratch(name)),
                  L"Failed to export the asset. At present, we just support save an asset as *.stl");
        EXPECT_FALSE(boost::filesystem::exists(scratch(name)));
    }
}

TEST_F(ExportTest, ASuffixThatNobodyWritesIsNamed)
{
    const std::wstring path = scratch(L"model.dwg");
    answerBoxes(0);
    EXPECT_EQ(failure(L"Asset.Export " + path),
              L"No matched translator is found with the suffix of file name: \"" + path + L"\"");
    EXPECT_EQ(boxes().size(), 1u);
}

TEST_F(ExportTest, AFolderThatIsNotThereFailsWithTheFilesName)
{
    EXPECT_NE(failure(L"Asset.Export " + scratch(L"no/such/folder/model.stl")).find(L"model.stl"),
              std::wstring::npos);
}

TEST_F(ExportTest, TwoParametersAreNoPath)
{
    const std::wstring path = scratch(L"unused.stl");
    run(L"VuCommands.ExportCmd " + path + L" more");
    EXPECT_FALSE(boost::filesystem::exists(path));
}

TEST_F(ExportTest, UsageIsToldOnlyOnceTheUserAgreed)
{
    std::vector<std::string> keys;
    const boost::signals2::scoped_connection connection =
        vuGA::gaCommandEvent.connect([&](const std::string& key) { keys.push_back(key); });
    answer(L"Asset.Export " + scratch(L"usage.stl"));
    EXPECT_TRUE(keys.empty());
    Vu::UIBaseOptionGroup::get()->analytics(true);
    answer(L"Asset.Export " + scratch(L"usage.stl"));
    run(L"Asset.Export " + scratch(L"usage.bmp"));
    Vu::UIBaseOptionGroup::get()->analytics(false);
    EXPECT_EQ(keys, (std::vector<std::string>{"Quillet.ExportCmd", "Quillet.ExportCmd"}));
}

} // namespace
