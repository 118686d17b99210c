#include "Server/DataModel/Asset.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/UsageEvents.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>

using Vu::FileDialog;

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

TEST_F(ExportTest, DialogsProposeTheDocumentsNameAndAKindThatCanBeWritten)
{
    answer(L"Document.Rename \"Plate 7/b\"");
    std::vector<FileDialog::Request> requests;
    FileDialog::responder([&](const FileDialog::Request& request, std::vector<std::wstring>&) {
        requests.push_back(request);
        return false;
    });
    for (const wchar_t* command : {L"ExportCommand", L"ExportAsCommand", L"SaveAsImageCommand"})
        answer(std::wstring(L"Commands.Start ") + command);
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[0].initialPath, L"Plate 7_b.stl");
    EXPECT_EQ(requests[1].initialPath, L"Plate 7_b.stp");
    EXPECT_EQ(requests[1].filter, L"SAT File (*.sat);;STEP File (*.stp *.step)");
    EXPECT_EQ(requests[1].entry, L"STEP File (*.stp *.step)");
    EXPECT_EQ(requests[2].initialPath, L"Plate 7_b.png");
}

TEST_F(ExportTest, ASuffixThatNobodyWritesIsNamed)
{
    const std::wstring path = scratch(L"model.dwg");
    answerBoxes(0);
    EXPECT_EQ(failure(L"Asset.Export " + path),
              L"No matched translator is found with the suffix of file name: \"" + path + L"\"");
    EXPECT_EQ(boxes().size(), 1u);
}

TEST_F(ExportTest, ADesignIsWrittenInEveryFormatThatATranslatorWrites)
{
    for (const wchar_t* name : {L"d.stp", L"d.igs", L"d.brep", L"d.stl", L"d.obj", L"d.gltf", L"d.glb"}) {
        const std::wstring path = scratch(name);
        answer(L"Design.Export " + path);
        EXPECT_GT(boost::filesystem::file_size(path), 1000u) << path;
        answer(L"Document.Open " + path);
    }
    EXPECT_EQ(documents(), 8u);
    EXPECT_NE(failure(L"Design.Export " + scratch(L"d.wrl")).find(L"no translator writes"),
              std::wstring::npos);
    EXPECT_NE(failure(L"Design.Export " + scratch(L"d")).find(L"no translator writes"), std::wstring::npos);
}

TEST_F(ExportTest, AnEmptyDesignIsRefusedWithOneMessage)
{
    answer(L"Design.New");
    for (const wchar_t* name : {L"e.stp", L"e.igs", L"e.brep", L"e.stl", L"e.obj", L"e.gltf", L"e.glb"}) {
        const std::wstring path = scratch(name);
        for (const wchar_t* flag : {L"", L" /Combine"}) {
            const std::wstring text = failure(L"Design.Export " + path + flag);
            EXPECT_NE(text.find(path), std::wstring::npos) << path;
            EXPECT_EQ(std::count(text.begin(), text.end(), L'\n'), 0) << path;
            EXPECT_FALSE(boost::filesystem::exists(path)) << path;
        }
    }
}

TEST_F(ExportTest, TheRefinementOfADesignsExportIsCheckedAndKept)
{
    const auto size = [this](const std::wstring& words) {
        const std::wstring path = scratch(L"r.stl");
        answer(L"Design.Export " + path + L" " + words);
        return boost::filesystem::file_size(path);
    };
    const auto usual = size(L"");
    EXPECT_GT(size(L"5"), usual);
    EXPECT_GT(size(L"20,0.001,21.5,10"), usual);
    EXPECT_GT(size(L"20,0.001,5"), usual);
    EXPECT_EQ(size(L"20,0.001,21.5,56.401283"), usual);
    for (const wchar_t* wrong : {L"fine", L"20,-1", L"1,1,1,1,1", L"20,,3", L"nan"})
        EXPECT_NE(failure(L"Design.Export " + scratch(L"w.stl") + L" " + wrong).find(L"is not a refinement"),
                  std::wstring::npos);
    EXPECT_FALSE(boost::filesystem::exists(scratch(L"w.stl")));
    EXPECT_EQ(answer(L"Design.Unit"), L"millimetres");
    EXPECT_NE(failure(L"Design.Unit yard").find(L"is not a unit"), std::wstring::npos);
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
