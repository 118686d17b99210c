#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/UsageEvents.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

#include <boost/filesystem/fstream.hpp>
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

    static std::vector<std::wstring> partNames()
    {
        std::vector<std::wstring> names;
        for (const auto& part : Vs::DocumentMgr::get()->activeAsset()->components()->children)
            names.push_back(part->name);
        return names;
    }

    /// The longest side of the largest body's box.
    static double largestSide(const Vs::Component& component)
    {
        double largest = 0;
        if (const auto mesh = component.body ? component.body->mesh() : nullptr)
            for (size_t axis = 0; axis < 3; ++axis) {
                float least = mesh->positions.at(axis), most = least;
                for (size_t i = axis; i < mesh->positions.size(); i += 3) {
                    least = std::min(least, mesh->positions[i]);
                    most = std::max(most, mesh->positions[i]);
                }
                largest = std::max(largest, double(most) - double(least));
            }
        for (const auto& child : component.children)
            largest = std::max(largest, largestSide(*child));
        return largest;
    }
    static double largestSide() { return largestSide(*Vs::DocumentMgr::get()->activeAsset()->components()); }
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
    EXPECT_NE(failure(L"Design.Export " + scratch(L"d.wrl"))
                  .find(L"no translator writes this kind of file. These are written: .stp, .step, .igs"),
              std::wstring::npos);
    EXPECT_NE(failure(L"Design.Export " + scratch(L"d")).find(L"no translator writes"), std::wstring::npos);
}

TEST_F(ExportTest, WhatIsHiddenOrNotSelectedStaysOutOfEveryFormat)
{
    answer(L"Design.New");
    answer(L"Design.Box 10 10 10");
    answer(L"Design.Box 20 20 20");
    answer(L"Design.Box 30 30 30");
    const std::vector<std::wstring> names = partNames();
    ASSERT_EQ(names.size(), 3u);
    answer(L"Design.Hide \"" + names[2] + L"\"");
    answer(L"Selection.Select \"" + names[0] + L"\"");
    const std::vector<std::wstring> suffixes = {L".stp", L".igs",  L".brep", L".stl",
                                                L".obj", L".gltf", L".glb"};
    for (const std::wstring& suffix : suffixes) {
        answer(L"Design.Export " + scratch(L"selected" + suffix) + L" /Selected");
        answer(L"Design.Export " + scratch(L"visible" + suffix));
        answer(L"Design.Export " + scratch(L"all" + suffix) + L" /Hidden");
    }
    answer(L"Selection.Select \"" + names[2] + L"\"");
    for (const wchar_t* name : {L"n.stp", L"n.stl"}) {
        EXPECT_NE(failure(L"Design.Export " + scratch(name) + L" /Selected").find(L"can't be written"),
                  std::wstring::npos);
        EXPECT_FALSE(boost::filesystem::exists(scratch(name)));
    }
    answer(L"Selection.Clear");
    EXPECT_EQ(failure(L"Design.Export " + scratch(L"n.stl") + L" /Selected"),
              L"Nothing that can be exported is selected.");
    for (const std::wstring& suffix : suffixes)
        for (const auto& [name, size] :
             {std::pair(L"selected", 10.0), std::pair(L"visible", 20.0), std::pair(L"all", 30.0)}) {
            answer(L"Document.Open " + scratch(name + suffix));
            EXPECT_NEAR(largestSide(), size, 1e-3 * size) << Vs::Strings::narrow(name + suffix);
        }
}

TEST_F(ExportTest, EachPartGetsAFileOfItsOwnName)
{
    answer(L"Design.New");
    for (int i = 0; i < 3; ++i)
        answer(L"Design.Box 10 10 10");
    std::vector<std::wstring> names = partNames();
    for (size_t i = 0; i < 2; ++i) {
        answer(L"Selection.Select \"" + names[i] + L"\"");
        answer(L"Commands.Start RenameCommand NewName=" + std::wstring(i == 0 ? L"a/b" : L"a_b"));
    }
    answer(L"Design.Export " + scratch(L"p.stl") + L" /Separate");
    EXPECT_FALSE(boost::filesystem::exists(scratch(L"p.stl")));
    // No name leads out of the folder, and none occurs twice.
    for (const std::wstring& name : {std::wstring(L"a_b"), std::wstring(L"a_b-2"), names[2]})
        EXPECT_EQ(boost::filesystem::file_size(scratch(L"p-" + name + L".stl")), 84u + 12 * 50);
}

TEST_F(ExportTest, AFileHasTheFormAxisAndUnitThatItsFormatOffers)
{
    answer(L"Design.New");
    answer(L"Design.Box 10 20 40");
    const auto text = [&](const std::wstring& flags, const wchar_t* name = L"t.stl") {
        answer(L"Design.Export " + scratch(name) + flags);
        boost::filesystem::ifstream stream(scratch(name));
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    const auto has = [](const std::string& text, const char* what) {
        return text.find(what) != std::string::npos;
    };
    EXPECT_TRUE(text(L" /Text").starts_with("solid "));
    EXPECT_TRUE(has(text(L" /Text"), "vertex 10 20 40\n"));
    EXPECT_TRUE(has(text(L" /Text /YUp"), "vertex 10 40 -20\n"));
    EXPECT_TRUE(has(text(L" /Text /Cm"), "vertex 1 2 4\n"));
    EXPECT_TRUE(has(text(L"", L"t.obj"), "v 10 40 -20\n"));
    EXPECT_TRUE(has(text(L" /ZUp", L"t.obj"), "v 10 20 40\n"));
    text(L" /Text");
    answer(L"Document.Open " + scratch(L"t.stl"));
    EXPECT_NEAR(largestSide(), 40, 1e-3);
    for (const wchar_t* wrong :
         {L"w.stp /Text", L"w.obj /Text", L"w.stp /YUp", L"w.glb /ZUp", L"w.glb /Cm", L"w.brep /In"})
        EXPECT_NE(failure(L"Design.Export " + scratch(wrong)).find(L"have "), std::wstring::npos) << wrong;
    for (const wchar_t* wrong :
         {L"w.stl /YUp /ZUp", L"w.stl /Cm /In", L"w.stl /Cm /DisplayUnit", L"w.stl /Combine /Separate"})
        EXPECT_NE(failure(L"Design.Export " + scratch(wrong)).find(L"one"), std::wstring::npos) << wrong;
    EXPECT_NE(failure(L"Commands.Start VeloraExportCommand UpAxis=x Unit=mile Path=" + scratch(L"w.stl"))
                  .find(L"\"mile\""),
              std::wstring::npos);
    EXPECT_FALSE(boost::filesystem::exists(scratch(L"w.stl")));
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
    EXPECT_LT(size(L"coarse"), usual);
    EXPECT_GT(size(L"Fine"), usual);
    for (const wchar_t* wrong : {L"finest", L"20,-1", L"1,1,1,1,1", L"20,,3", L"nan"})
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
