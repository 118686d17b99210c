#include "UI/Base/Command/TextRows.h"
#include "UI/Commands/Camera/NamedViewCmds.h"

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;

// clang-format off
constexpr const wchar_t* kArea = L"NamedView";
constexpr DirectTextRow kAdd          = {kArea, L"AddNamedView", L"Add a new named view"};
constexpr DirectTextRow kRemove       = {kArea, L"RemoveNamedView", L"<named view name> Remove a new named view."};
constexpr DirectTextRow kUpdateCamera = {kArea, L"UpdateNamedViewCamera", L"<named view name> Update a new named view camera."};
constexpr DirectTextRow kUpdateName   = {kArea, L"UpdateNamedViewName", L"<named view name><new named view name> Update a new named view name."};
constexpr DirectTextRow kRestore      = {kArea, L"RestoreCamera", L"<named view name> Restore camera from named view."};
// clang-format on

/// Runs the definition with the parameters as its names; what isn't given is left to the command.
template <const DirectTextRow& kRow, class Definition>
class TextCmdNamedView : public DirectTextCommand<kRow>
{
public:
    Vs::TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        CommandContext context = CommandContext::activeContext();
        if (parameters.parameters() > 0)
            context.addArgument(NamedViewCmdDef::namedViewNameArgumentName(), parameters[0]);
        if (parameters.parameters() > 1)
            context.addArgument(UpdateNamedViewNameCmdDef::newNamedViewNameArgumentName(), parameters[1]);
        return runDefinition(Definition::info()->key(), context, parameters);
    }
};

TextCmdNamedView<kAdd, AddNamedViewCmdDef> TextCmdNamedViewAddNamedView;
TextCmdNamedView<kRemove, RemoveNamedViewCmdDef> TextCmdNamedViewRemoveNamedView;
TextCmdNamedView<kUpdateCamera, UpdateNamedViewCameraCmdDef> TextCmdNamedViewUpdateNamedViewCamera;
TextCmdNamedView<kUpdateName, UpdateNamedViewNameCmdDef> TextCmdNamedViewUpdateNamedViewName;
TextCmdNamedView<kRestore, RestoreCameraCmdDef> TextCmdNamedViewRestoreCamera;

} // namespace
} // namespace Vu::Commands
