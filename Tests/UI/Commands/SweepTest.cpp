#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Session/AssetSession.h"

#include <boost/filesystem/operations.hpp>

using namespace Vu;

namespace {

class WaitingCmdDef : public Vs::Implements<WaitingCmdDef, CommandDefinition>
{
public:
    WaitingCmdDef() : Implements(info()) {}
    static Info* info()
    {
        static Info info(L"WaitingCommand", L"Waiting", nullptr);
        return &info;
    }

protected:
    CommandBase* onCreateCommand(CommandContext* context) override { return new Waiting(this, context); }

private:
    class Waiting : public Vs::Implements<Waiting, InteractiveCommandBase>
    {
    public:
        Waiting(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}
    };
};

/// What is open while every definition and every line is tried.
enum class Scene { Nothing, OneDocument, TwoDocuments, RunningCommand };

class SweepTest : public CommandsTests::WithProgram, public ::testing::WithParamInterface<Scene>
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        // The lines that save write to wherever their nonsense leads.
        boost::filesystem::create_directories(scratch(L"sweep"));
        m_before = boost::filesystem::current_path();
        boost::filesystem::current_path(scratch(L"sweep"));
        answerBoxes(1);
        if (GetParam() != Scene::Nothing)
            answer(L"Design.Sample");
        if (GetParam() == Scene::TwoDocuments)
            answer(L"Design.New");
        if (GetParam() == Scene::RunningCommand)
            answer(L"Commands.Start WaitingCommand");
    }

    void TearDown() override
    {
        boost::filesystem::current_path(m_before);
        WithProgram::TearDown();
    }

    WaitingCmdDef m_waiting;
    boost::filesystem::path m_before;
};

TEST_P(SweepTest, EveryDefinitionSaysWhetherItAppliesAndHowItLooks)
{
    for (CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions()) {
        SCOPED_TRACE(std::string(definition->getInterfaceId()->text()));
        for (CommandContext context : {CommandContext::activeContext(), CommandContext::emptyContext()}) {
            EXPECT_NO_THROW(definition->isApplicable(&context));
            EXPECT_NO_THROW(definition->isVisible(&context));
            EXPECT_NO_THROW(definition->updateInputControl(&context));
        }
        EXPECT_NE(definition->inputControl(), nullptr);
        EXPECT_FALSE(definition->id().empty());
    }
}

TEST_P(SweepTest, EveryLineAnswersBadParametersWithZeroOrOne)
{
    const std::vector<std::wstring> parameters = {
        L"",
        L" nonsense",
        L" \"\"",
        L" -1",
        L" 1e999 1e999 1e999",
        L" /nowhere/at/all.step",
        L" a b c d e f g h i",
        L" \"" + std::wstring(5000, L'x') + L"\"",
        L" /Flag /CloseLast",
    };
    for (const Vs::TextCommand* command : Vs::TextCommandMgr::get()->commands()) {
        // They end the program, which the other lines still need.
        if (command->name() == L"ExitApplicationCmd" || command->name() == L"CloseWorkspaceCmd")
            continue;
        EXPECT_FALSE(command->help().empty());
        for (const std::wstring& text : parameters) {
            const Vs::TextCommandResult result = run(command->area() + L"." + command->name() + text);
            EXPECT_LE(result.first, 1u);
            EXPECT_FALSE(result.first == 1 && result.second.empty()) << "a failure without a reason";
        }
    }
}

class ArgumentsTest : public CommandsTests::WithProgram
{
};

TEST_F(ArgumentsTest, NoCommandRunsWithAnArgumentThatItDoesNotTake)
{
    answer(L"Design.New");
    for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions()) {
        const std::wstring why = failure(L"Commands.Start " + definition->id() + L" Nonsense=1");
        EXPECT_NE(why.find(L"has no argument \"Nonsense\""), std::wstring::npos)
            << Vs::Strings::narrow(definition->id() + L": " + why);
    }
    EXPECT_EQ(failure(L"Commands.Start FindInCanvas Path=1"),
              L"Find in Canvas has no argument \"Path\": it takes none.");
    EXPECT_EQ(failure(L"Commands.Start BoxCommand dx=100 Dy=1 Dz=1"),
              L"Box has no argument \"dx\". Did you mean \"Dx\"?");
    EXPECT_EQ(documents(), 1u);
}

INSTANTIATE_TEST_SUITE_P(InEveryScene, SweepTest,
                         ::testing::Values(Scene::Nothing, Scene::OneDocument, Scene::TwoDocuments,
                                           Scene::RunningCommand));

} // namespace
