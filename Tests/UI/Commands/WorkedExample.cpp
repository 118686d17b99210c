// A whole command in one file, as an example of how the pieces fit. In the add-in the row and the classes
// stand in a pair of files of their family, the wrapper's row in the table of wrappers, and the definition
// among the members of CommandsAddIn.

#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/PointText.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/CameraCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {
namespace {

// 1. The definition: what the command is, and when it may run. Its base knows that it needs a view.
class LookAlongCmdDef : public RowDefinition<LookAlongCmdDef, CameraCmdDef>
{
public:
    static const CommandRow kRow;

    static const Vs::UniqueString* directionArgumentName();

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

// 2. The command: what it does, once.
class LookAlongCmd : public Vs::Implements<LookAlongCmd, SimpleCommand>
{
    friend class LookAlongCmdDef;
    LookAlongCmd(LookAlongCmdDef* definition, CommandContext* context) : Implements(definition, context) {}

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

// 3. The row: everything about the command that is data.
constinit const CommandRow LookAlongCmdDef::kRow = {.key = L"LookAlongCommand",
                                                    .title = "Look Along",
                                                    .icon = &Resources::LookAt,
                                                    .groups = {&CommandGroup::CameraGroup}};

const Vs::UniqueString* LookAlongCmdDef::directionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Direction", true);
    return name;
}

CommandBase* LookAlongCmdDef::onCreateCommand(CommandContext* context)
{
    return new LookAlongCmd(this, context);
}

// A wrong argument is the user's to mend: say what it is. A view that isn't there just leaves nothing to do.
void LookAlongCmd::onExecute(Vs::Status& status)
{
    Vs::Scene::ViewFragment* fragment = firstFragment(graphicsViewOf(assetSession()));
    if (!fragment)
        return;
    const std::wstring text = commandContext()->argumentAsString(LookAlongCmdDef::directionArgumentName());
    GkVector3d direction;
    if (!Vs::Types::StringToVector3d(text, direction)) {
        status.addError(
            localizedFormat("LookAlongDirection", "\"%1%\" is not a direction; write it as x,y,z.", text));
        return;
    }
    fragment->camera()->look(direction, fragment->renderParams()->groundPlaneOrientation());
    fragment->camera()->fit(fragment->bounds());
}

// 4. The line of text: how scripts and transcripts reach it.
void fillDirection(const Vs::TextCommandParameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(LookAlongCmdDef::directionArgumentName(), parameters[0]);
}

// clang-format off
constexpr WrapperRow kWrappers[] = {
    {L"VuCommands", L"LookAlongCmd", L"<x,y,z> Look along the direction.", "%v", &LookAlongCmdDef::info, fillDirection},
};
// clang-format on

const Wrappers<kWrappers> theWrappers;

// 5. The tests: what a user sees, through the line of text.
class LookAlongTest : public CommandsTests::WithProgram
{
    LookAlongCmdDef m_definition;
};

TEST_F(LookAlongTest, TheCameraLooksAlongTheDirection)
{
    answer(L"Design.New");
    answer(L"Design.Box 10 20 30");
    answer(L"VuCommands.LookAlongCmd 0,1,0");
    const GkVector3d direction = activeCamera()->direction();
    EXPECT_NEAR(direction.y, 1.0, 1e-9);
}

TEST_F(LookAlongTest, WithoutADirectionItSaysHowToWriteOne)
{
    answer(L"Design.New");
    EXPECT_EQ(failure(L"VuCommands.LookAlongCmd"), L"\"\" is not a direction; write it as x,y,z.");
}

TEST_F(LookAlongTest, WithoutADocumentItDoesNothing)
{
    EXPECT_EQ(answer(L"VuCommands.LookAlongCmd 0,1,0"), L"");
}

} // namespace
} // namespace Vu::Commands
