// The lines of the area "Design" that show and hide components.

#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Design/ParametersAsList.h"
#include "UI/Design/VisibilityCmds.h"

namespace Vu::Design {
namespace {

// clang-format off
struct VisibilityTextRow
{
    const wchar_t* name;
    const wchar_t* help;
    const char* format;
    const wchar_t* key;
};

constexpr VisibilityTextRow kHideLine    = {L"Hide",    L"[<path>]... Hides the components, or what is selected", "", L"HideCommand"};
constexpr VisibilityTextRow kShowLine    = {L"Show",    L"[<path>]... Shows the components, or what is selected", "", L"ShowCommand"};
constexpr VisibilityTextRow kShowAllLine = {L"ShowAll", L"Shows everything that is hidden", "", L"ShowAllCommand"};
// clang-format on

template <const VisibilityTextRow& kRow>
class TextCmdVisibility : public Vs::PythonEntry<TextCmdVisibility<kRow>, TranscriptedCommandTextCommand>
{
public:
    TextCmdVisibility()
        : Vs::PythonEntry<TextCmdVisibility<kRow>, TranscriptedCommandTextCommand>(
              L"Design", kRow.name, kRow.help, kRow.format, false, kRow.key)
    {
    }

protected:
    void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context) override
    {
        if (const std::wstring objects = parametersAsList(parameters); !objects.empty())
            context.addArgument(VisibilityCmdDef::objectsArgumentName(), objects);
    }
};

TextCmdVisibility<kHideLine> theHide;
TextCmdVisibility<kShowLine> theShow;
TextCmdVisibility<kShowAllLine> theShowAll;

} // namespace
} // namespace Vu::Design
