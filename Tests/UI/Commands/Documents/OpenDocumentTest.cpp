// The ways in which a file becomes the document that the user sees, and the files that don't.

#include "Server/Base/Metrics.h"
#include "Server/Base/OptionGroup.h"
#include "Server/Base/PathInfo.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "Tests/Support/Files.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "Tests/UI/Commands/WithEdition.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <boost/filesystem/operations.hpp>

using namespace Vu;
using namespace Vu::Commands;

namespace {

namespace fs = boost::filesystem;
using TestSupport::contentOf;
using TestSupport::overwrite;

class OpenDocumentTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        emptyScratch(L"open");
        RecentDocumentMgr::get()->clearRecent();
    }
    void TearDown() override
    {
        Application::testing(true);
        Vs::MultiThreadOptionGroup* options = Vs::MultiThreadOptionGroup::get();
        options->openMultipleFiles(false);
        options->multiThreadLoad(true);
        WithProgram::TearDown();
    }

    static std::wstring file(const std::wstring& name) { return scratch(L"open/" + name); }
    static std::vector<std::wstring> recent()
    {
        std::vector<std::wstring> names;
        for (const RecentDocument* document : RecentDocumentMgr::get()->newestFirst(100))
            names.push_back(fs::path(document->path()).filename().wstring());
        return names;
    }
    /// Closed native files with a box in each; the recent list is empty afterwards.
    static void makeFiles(std::initializer_list<const wchar_t*> names)
    {
        for (const wchar_t* name : names) {
            answer(L"Design.New");
            answer(L"Design.Box 10 20 30");
            answer(L"Document.Save " + file(name));
            answer(L"Document.CloseAll");
        }
        RecentDocumentMgr::get()->clearRecent();
    }
    /// Lets the open dialog accept several files, with a user who chooses these.
    void chooseFiles(std::vector<std::wstring> names)
    {
        Vs::MultiThreadOptionGroup::get()->openMultipleFiles(true);
        Application::testing(false);
        FileDialog::responder(
            [this, names](const FileDialog::Request& request, std::vector<std::wstring>& answer) {
                EXPECT_TRUE(request.several && request.forOpen);
                m_filter = request.filter;
                answer = names;
                return !names.empty();
            });
    }
    static bool openedWith(const Vs::UniqueString* argument, const std::wstring& path)
    {
        CommandContext context = CommandContext::activeContext();
        context.addArgument(argument, path);
        context.executeImmediately(true);
        const bool well = definition(OpenDocumentCmdDef::info()->key())->executeCommand(context).isOk();
        Application::get()->flushDeferredTasks();
        return well;
    }

    std::wstring m_filter;
};

TEST_F(OpenDocumentTest, OfSeveralFilesTheForeignComeFirstThenTheNativeAndTheLastStays)
{
    makeFiles({L"a.vlra", L"b.vlra", L"c.vlra"});
    answer(L"Design.Sample");
    answer(L"Asset.Export " + file(L"part.stl"));
    answer(L"Document.CloseAll");
    std::vector<std::wstring> opened;
    struct Site : Vs::DocumentEventSite
    {
        explicit Site(std::vector<std::wstring>& names) : names(names)
        {
            Vs::DocumentEventSource::get()->subscribe(this);
        }
        ~Site() override { Vs::DocumentEventSource::get()->unsubscribe(this); }
        void documentOpened(Vs::DocumentEvent* event) override
        {
            names.push_back(event->document()->displayName());
        }
        std::vector<std::wstring>& names;
    } const site(opened);
    for (const bool sideBySide : {false, true}) {
        SCOPED_TRACE(sideBySide);
        Vs::MultiThreadOptionGroup::get()->multiThreadLoad(sideBySide);
        opened.clear();
        RecentDocumentMgr::get()->clearRecent();
        answer(L"Design.New");
        answer(L"Asset.MarkDirty");
        answerBoxes(2);
        chooseFiles({file(L"a.vlra"), file(L"part.stl"), file(L"b.vlra"), file(L"c.vlra"), file(L"a.vlra"),
                     file(L"c.vlra")});
        answer(L"VuCommands.OpenDocumentCmd");
        ASSERT_GE(opened.size(), 4u);
        EXPECT_EQ(opened.front(), L"part");
        EXPECT_EQ((std::vector(opened.begin() + 1, opened.begin() + 4)),
                  (std::vector<std::wstring>{L"a", L"b", L"c"}));
        ASSERT_NE(activeDocument(), nullptr);
        EXPECT_EQ(activeDocument()->path(), file(L"c.vlra"));
        EXPECT_EQ(documents(), 1u) << "each took the place of the one before";
        EXPECT_EQ(recent(), (std::vector<std::wstring>{L"c.vlra", L"a.vlra", L"b.vlra"}));
        EXPECT_EQ(boxes(), std::vector<std::wstring>());
        EXPECT_EQ(SharedWorkflows::activeAssetShell()->assetSessions().size(), 1u);
        Application::testing(true);
        answer(L"Document.CloseAll");
    }
}

TEST_F(OpenDocumentTest, OfSeveralFilesThoseThatFailAreToldOnceAndTheOthersOpen)
{
    makeFiles({L"sound.vlra"});
    overwrite(file(L"bad.vlra"), "noise");
    overwrite(file(L"bad.stp"), "noise");
    for (const bool sideBySide : {false, true}) {
        SCOPED_TRACE(sideBySide);
        Vs::MultiThreadOptionGroup::get()->multiThreadLoad(sideBySide);
        answerBoxes(0);
        const size_t before = boxes().size();
        chooseFiles({file(L"bad.vlra"), file(L"bad.stp"), file(L"sound.vlra"), file(L"gone.vlra")});
        const Vs::TextCommandResult result = run(L"VuCommands.OpenDocumentCmd");
        std::wstring told = result.second;
        for (size_t i = before; i < boxes().size(); ++i)
            told += boxes()[i];
        std::wstring inBoxes = told.substr(result.second.size());
        for (const wchar_t* name : {L"bad.vlra\"", L"gone.vlra\""}) {
            const size_t first = inBoxes.find(name);
            ASSERT_NE(first, std::wstring::npos) << inBoxes.c_str();
            EXPECT_EQ(inBoxes.find(name, first + 1), std::wstring::npos) << "told twice";
        }
        EXPECT_NE(told.find(L"bad.stp"), std::wstring::npos);
        EXPECT_EQ(result.first, 1u);
        EXPECT_EQ(documents(), 1u);
        ASSERT_NE(activeDocument(), nullptr);
        EXPECT_EQ(activeDocument()->path(), file(L"sound.vlra"));
        Application::testing(true);
        answer(L"Document.CloseAll");
    }
    chooseFiles({});
    EXPECT_EQ(answer(L"VuCommands.OpenDocumentCmd"), L"") << "cancelled";
}

TEST_F(OpenDocumentTest, WhatIsOpenAlreadyIsBroughtUpAndTheCurrentDocumentStaysAsItIs)
{
    makeFiles({L"a.vlra", L"b.vlra"});
    answer(L"Document.Open " + file(L"a.vlra"));
    answer(L"Document.Open " + file(L"b.vlra"));
    ASSERT_EQ(documents(), 2u);
    RecentDocumentMgr::get()->clearRecent();
    const Vs::Document* second = activeDocument();
    answer(L"VuCommands.OpenDocumentCmd " + file(L"b.vlra"));
    EXPECT_EQ(activeDocument(), second);
    EXPECT_TRUE(recent().empty());
    answer(L"Asset.MarkDirty");
    answerBoxes(2);
    answer(L"VuCommands.OpenDocumentCmd " + file(L"a.vlra"));
    EXPECT_EQ(activeDocument()->path(), file(L"a.vlra"));
    EXPECT_EQ(documents(), 1u) << "the dirty one went without a question";
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(recent(), std::vector<std::wstring>{L"a.vlra"});
}

TEST_F(OpenDocumentTest, ANativeFileThatCannotBeReadIsOneMessageAndChangesNothing)
{
    makeFiles({L"sound.vlra"});
    const std::string whole = contentOf(file(L"sound.vlra"));
    std::string wrongByte = whole;
    wrongByte[wrongByte.find("\"format\"") + 2] = 'x';
    std::vector<std::string> contents = {"", "noise", wrongByte};
    for (size_t size = 1024; size < whole.size(); size += 1024)
        contents.push_back(whole.substr(0, size));

    answer(L"Design.New");
    answer(L"Document.Rename Mine");
    answer(L"Asset.MarkDirty");
    const Vs::Document* before = activeDocument();
    const auto sessions = SharedWorkflows::activeAssetShell()->assetSessions();
    answerBoxes(0);
    for (const std::string& content : contents) {
        overwrite(file(L"bad.vlra"), content);
        const size_t told = boxes().size();
        const std::wstring reason = failure(L"VuCommands.OpenDocumentCmd " + file(L"bad.vlra"));
        ASSERT_EQ(boxes().size(), told + 1) << content.size();
        EXPECT_EQ(boxes().back(), reason);
        EXPECT_NE(reason.find(L"bad.vlra"), std::wstring::npos);
        EXPECT_EQ(reason.find(L'\n'), std::wstring::npos);
        // The line that scripts use reports it only as its answer.
        EXPECT_EQ(failure(L"Document.Open " + file(L"bad.vlra")), reason);
        ASSERT_EQ(boxes().size(), told + 1);
        ASSERT_EQ(documents(), 1u) << content.size();
    }
    EXPECT_EQ(activeDocument(), before);
    EXPECT_TRUE(before->isDirty(false));
    EXPECT_EQ(SharedWorkflows::activeAssetShell()->assetSessions(), sessions);
    EXPECT_EQ(SessionMgr::get()->documentSessions().size(), 1u);
    EXPECT_TRUE(recent().empty());
}

TEST_F(OpenDocumentTest, AFileThatIsDeletedOrChangedWhileItIsOpenCostsNothing)
{
    makeFiles({L"mine.vlra"});
    answer(L"VuCommands.OpenDocumentCmd " + file(L"mine.vlra"));
    answer(L"Design.Box 1 2 3");
    fs::remove(file(L"mine.vlra"));
    answer(L"Document.Save");
    EXPECT_TRUE(contentOf(file(L"mine.vlra")).starts_with("PK"));
    EXPECT_FALSE(activeDocument()->isDirty(false));

    answer(L"Design.Box 1 2 3");
    overwrite(file(L"mine.vlra"), "somebody else's");
    EXPECT_NE(failure(L"Document.Save").find(L"another program has changed"), std::wstring::npos);
    EXPECT_EQ(contentOf(file(L"mine.vlra")), "somebody else's");
    EXPECT_TRUE(activeDocument()->isDirty(false));
    answer(L"Document.SaveAs " + file(L"rescued.vlra"));
    EXPECT_FALSE(activeDocument()->isDirty(false));
    answer(L"Document.CloseAll");
    answer(L"Document.Open " + file(L"rescued.vlra"));
    EXPECT_EQ(activeDocument()->activeAsset()->components()->children.size(), 3u);
    // A file that vanished altogether is reported by name, and what is open stays.
    EXPECT_EQ(failure(L"Document.Open " + file(L"gone.vlra")), L"Filename not found");
    answerBoxes(0);
    EXPECT_NE(failure(L"VuCommands.OpenDocumentCmd " + file(L"gone.vlra")).find(L"doesn't exist"),
              std::wstring::npos);
    EXPECT_EQ(documents(), 1u);
}

TEST_F(OpenDocumentTest, AFileOfTheCloudDriveIsRefusedUnlessItIsDropped)
{
    makeFiles({L"local.vlra"});
    const fs::path cloud = Vs::PathInfo::cloudCacheDirectory();
    fs::create_directories(cloud);
    const std::wstring path = (cloud / "drive.vlra").wstring();
    fs::rename(file(L"local.vlra"), path);
    const auto* metric = Vs::Metrics::TimeMetric::make(Vs::UniqueString::find("Open", true), L"");
    const size_t measured = metric->count();
    for (const bool several : {false, true}) {
        Vs::MultiThreadOptionGroup::get()->openMultipleFiles(several);
        EXPECT_NE(failure(L"VuCommands.OpenDocumentCmd " + path).find(L"cloud drive"), std::wstring::npos);
    }
    Vs::MultiThreadOptionGroup::get()->openMultipleFiles(false);
    EXPECT_EQ(documents(), 0u);
    EXPECT_TRUE(openedWith(Vs::UniqueString::find("DragAndDrop", true), path));
    ASSERT_NE(activeDocument(), nullptr);
    EXPECT_EQ(activeDocument()->path(), path);
    EXPECT_EQ(metric->count(), measured) << "none of these is measured";
    answer(L"Document.SaveAs " + file(L"copy.vlra"));
    answer(L"VuCommands.OpenDocumentCmd " + file(L"copy.vlra"));
    EXPECT_EQ(metric->count(), measured + 1);
    fs::remove(path);
}

TEST_F(OpenDocumentTest, WithTheManyFilesDialogALineStillOpensItsFileUnderTest)
{
    makeFiles({L"a.vlra"});
    Vs::MultiThreadOptionGroup::get()->openMultipleFiles(true);
    EXPECT_EQ(answer(L"VuCommands.OpenDocumentCmd"), L"") << "an empty path ends quietly";
    EXPECT_EQ(documents(), 0u);
    answer(L"VuCommands.OpenDocumentCmd " + file(L"a.vlra"));
    EXPECT_EQ(activeDocument()->path(), file(L"a.vlra"));
}

TEST_F(OpenDocumentTest, ADocumentThatThePlatformOpensIsShownAndTakesAnEmptyCloudName)
{
    makeFiles({L"behind.vlra"});
    answer(L"Design.New");
    Vs::Status status;
    Vs::Document* document = Vs::DocumentMgr::get()->open(file(L"behind.vlra"), status);
    ASSERT_NE(document, nullptr);
    document->setCloudId("cloud-1");
    for (const Vs::Timing timing : {Vs::Timing::Before, Vs::Timing::After}) {
        EXPECT_NE(activeDocument(), document);
        Vs::DocumentEvent event(document, timing);
        Vs::DocumentEventSource::get()->fireDocumentOpenedInBackground(&event);
    }
    run(L"");
    EXPECT_EQ(activeDocument(), document);
    EXPECT_FALSE(document->isCloud());
    EXPECT_EQ(documents(), 1u);
    EXPECT_EQ(recent(), std::vector<std::wstring>{L"behind.vlra"});
}

TEST_F(OpenDocumentTest, AnEditionImposesItsFilterThoughTheTranslatorsStayTheSame)
{
    answer(L"Design.Sample");
    answer(L"Asset.Export " + file(L"part.stl"));
    answer(L"Document.CloseAll");
    chooseFiles({file(L"part.stl")});
    {
        const CommandsTests::WithEdition edition({.filter = L"Ours (*.ours)"});
        answer(L"VuCommands.OpenDocumentCmd");
    }
    EXPECT_EQ(m_filter, L"Ours (*.ours)");
    EXPECT_EQ(documents(), 1u);
    answer(L"VuCommands.OpenDocumentCmd");
    EXPECT_NE(m_filter.find(L"All supported files ("), std::wstring::npos);
}

/// As an add-in may provide it: it needs something that this machine lacks.
class RivetcadTranslator : public Vs::Translator
{
public:
    RivetcadTranslator() { Vs::TranslatorFileRecognizer::registerTranslator(this); }
    ~RivetcadTranslator() override { Vs::TranslatorFileRecognizer::unregisterTranslator(this); }
    const std::string& identifier() const override { return m_identifier; }
    const std::wstring& name() const override { return m_name; }
    const std::vector<std::wstring>& extensions() const override { return m_extensions; }
    bool canOpen() const override { return true; }
    bool canSave(const std::string&) const override { return false; }
    bool open(Vs::TranslatorOpenOptions&, Vs::TranslatorContext&, Vs::Status& status) override
    {
        status.addError(missing);
        return false;
    }
    bool save(Vs::TranslatorSaveOptions&, Vs::TranslatorContext&, Vs::Status&) override { return false; }

    std::wstring missing;

private:
    std::string m_identifier = "RivetcadTranslator";
    std::wstring m_name = L"Rivetcad Files";
    std::vector<std::wstring> m_extensions = {L".rivet"};
};

TEST_F(OpenDocumentTest, WhatATranslatorMissesIsToldWithWhereItIsHad)
{
    RivetcadTranslator translator;
    overwrite(file(L"plan.rivet"), "plan");
    answer(L"Design.New");
    const Vs::Document* before = activeDocument();
    answerBoxes(0);
    translator.missing = L"X11_MISSING: no display library";
    EXPECT_EQ(answer(L"VuCommands.OpenDocumentCmd " + file(L"plan.rivet")), L"");
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_TRUE(boxes()[0].starts_with(L"X11 must be installed to open Rivetcad files.  You can download it "
                                       L"directly from https://"));
    translator.missing = L"Another cause.";
    EXPECT_EQ(failure(L"VuCommands.OpenDocumentCmd " + file(L"plan.rivet")), L"Another cause.");
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_EQ(activeDocument(), before);
}

} // namespace
