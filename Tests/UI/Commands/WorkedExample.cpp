// A whole command in one file, as an example of how the pieces fit together. It needs only the host, as an
// add-in of your own would. In the program's add-ins the row and the classes are in a pair of files of their
// family, and the definition is a member of the add-in.

#include "Server/Base/LocalizedText.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/PointText.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandRow.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/ViewMgr.h"

namespace Example {
namespace {

using Vu::CommandContext;

// The add-in's own texts; untranslated ones stay English.
constexpr const wchar_t* kDomain = L"Example";
constexpr Vs::LocalizedFormat localizedFormat{kDomain};

Vs::Scene::ViewFragment* modelShownIn(Vu::AssetSession* session)
{
    const Vu::GraphicsView* view = session ? session->viewManager()->graphicsView() : nullptr;
    return view ? view->modelFragment() : nullptr;
}

// 1. The definition: what the command is, and when it may run.
class LookAlongCmdDef : public Vu::RowDefinition<kDomain, LookAlongCmdDef>
{
public:
    static const Vu::CommandRow kRow;

    static const Vs::UniqueString* directionArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override
    {
        return modelShownIn(context->assetSession());
    }
    Vu::CommandBase* onCreateCommand(CommandContext* context) override;
};

// 2. The command: what it does, once.
class LookAlongCmd : public Vs::Implements<LookAlongCmd, Vu::SimpleCommand>
{
    friend class LookAlongCmdDef;
    LookAlongCmd(LookAlongCmdDef* definition, CommandContext* context) : Implements(definition, context) {}

    void onExecute(Vs::Status& status) override;
    Vu::ECommandType onCommandType() const override { return Vu::ECommandType::Nested; }
};

// 3. The row: everything about the command that is data.
constinit const Vu::CommandRow LookAlongCmdDef::kRow = {.key = L"LookAlongCommand",
                                                        .title = "Look Along",
                                                        .groups = {&Vu::CommandGroup::CameraGroup},
                                                        .arguments = {L"Direction"}};

const Vs::UniqueString* LookAlongCmdDef::directionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Direction", true);
    return name;
}

Vu::CommandBase* LookAlongCmdDef::onCreateCommand(CommandContext* context)
{
    return new LookAlongCmd(this, context);
}

// A wrong argument is for the user to correct: say what is wrong. A missing view just leaves nothing to do.
void LookAlongCmd::onExecute(Vs::Status& status)
{
    Vs::Scene::ViewFragment* model = modelShownIn(assetSession());
    if (!model)
        return;
    const std::wstring text = commandContext()->argumentAsString(LookAlongCmdDef::directionArgumentName());
    GkVector3d direction;
    if (!Vs::Types::StringToVector3d(text, direction)) {
        status.addError(
            localizedFormat("LookAlongDirection", "\"%1%\" is not a direction; write it as x,y,z.", text));
        return;
    }
    model->camera()->look(direction, model->renderParams()->groundPlaneOrientation());
    model->camera()->fit(model->bounds());
}

// 4. The text line: how scripts and transcripts reach it. The area is one row, each line another.
void fillDirection(const Vs::TextCommandParameters& parameters, CommandContext& context)
{
    if (parameters.parameters() == 1)
        context.addArgument(LookAlongCmdDef::directionArgumentName(), parameters[0]);
}

// clang-format off
constexpr Vu::AreaRow kArea = {L"Example", L"The commands of the worked example"};
constexpr Vu::WrapperRow kWrappers[] = {
    {L"Example", L"LookAlong", L"<x,y,z> Looks along the direction", "%v", &LookAlongCmdDef::info, fillDirection},
};
// clang-format on

const Vu::SubjectArea<kArea> theArea;
const Vu::Wrappers<kWrappers> theWrappers;

// 5. The tests: what a user sees, through the text line.
class LookAlongTest : public CommandsTests::WithProgram
{
    LookAlongCmdDef m_definition;
};

TEST_F(LookAlongTest, TheCameraLooksAlongTheDirection)
{
    answer(L"Design.New");
    answer(L"Design.Box 10 20 30");
    answer(L"Example.LookAlong 0,1,0");
    const Vs::Scene::ViewFragment* model = modelShownIn(Vu::CommandContext::activeContext().assetSession());
    ASSERT_NE(model, nullptr);
    EXPECT_NEAR(model->camera()->direction().y, 1.0, 1e-9);
}

TEST_F(LookAlongTest, WithoutADirectionItSaysHowToWriteOne)
{
    answer(L"Design.New");
    EXPECT_EQ(failure(L"Example.LookAlong"), L"\"\" is not a direction; write it as x,y,z.");
}

TEST_F(LookAlongTest, WithoutADocumentItDoesNothing)
{
    EXPECT_EQ(answer(L"Example.LookAlong 0,1,0"), L"");
}

} // namespace
} // namespace Example
