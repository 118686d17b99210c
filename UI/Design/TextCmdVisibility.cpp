// The lines of the area "Design" that show and hide components.

#include "UI/Base/Command/TextRows.h"
#include "UI/Design/ParametersAsList.h"
#include "UI/Design/VisibilityCmds.h"

namespace Vu::Design {
namespace {

void objects(const Vs::TextCommandParameters& parameters, CommandContext& context)
{
    if (const std::wstring list = parametersAsList(parameters); !list.empty())
        context.addArgument(VisibilityCmdDef::objectsArgumentName(), list);
}

constexpr const wchar_t* kArea = L"Design";

// clang-format off
constexpr WrapperRow kWrappers[] = {
    {kArea, L"Hide",    L"[<path>]... Hides the components, or what is selected", "", &HideCmdDef::info, objects},
    {kArea, L"Show",    L"[<path>]... Shows the components, or what is selected", "", &ShowCmdDef::info, objects},
    {kArea, L"ShowAll", L"Shows everything that is hidden", "", &ShowAllCmdDef::info, objects},
};
// clang-format on

const Wrappers<kWrappers> theWrappers;

} // namespace
} // namespace Vu::Design
