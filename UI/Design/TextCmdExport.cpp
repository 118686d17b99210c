#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Types/LengthUnit.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Design/ExportDesignCmd.h"

#include <cwctype>

namespace Vu::Design {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Design";
constexpr const wchar_t* kExportHelp = L"<filename> [<refinement>] [/Combine] [/Separate] [/Selected] "
                                       L"[/Hidden] [/Text] [/YUp] [/ZUp] [/DisplayUnit] "
                                       L"[/Mm] [/Cm] [/M] [/In] [/Ft] Writes what is visible of the active "
                                       L"design as the suffix says: .stp .igs .brep "
                                       L".stl .obj .gltf .glb. The refinement is coarse, fine or "
                                       L"degrees,fraction,ratio,percent: the angle between "
                                       L"facets, the distance from the true surface, how many times longer "
                                       L"than high a triangle may be, its longest "
                                       L"side. As one part, or each part as a file of its own; only what is "
                                       L"selected; what is hidden as well; as text; "
                                       L"with that axis upwards; in that unit of length";
constexpr const wchar_t* kUnitHelp =
    L"[<unit>] Shows or sets the unit of lengths that are shown: mm, cm, m, in, ft";

/// The keys of the units that are flags of the line: "/Mm" is "mm".
std::vector<std::string> unitsOf(const TextCommandParameters& parameters)
{
    std::vector<std::string> keys;
    for (const Vs::LengthUnit& unit : Vs::LengthUnit::all()) {
        std::wstring flag = Vs::Strings::widen(unit.key);
        flag[0] = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(flag[0])));
        if (parameters.hasFlag(flag))
            keys.emplace_back(unit.key);
    }
    return keys;
}

class TextCmdDesignExport : public Vs::PythonEntry<TextCmdDesignExport, TranscriptedCommandTextCommand>
{
public:
    TextCmdDesignExport() : PythonEntry(kArea, L"Export", kExportHelp, "%s%s", true, VeloraExportCmdDef::kKey)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() < 1 || parameters.parameters() > 2)
            return {1, std::wstring(L"Usage: Design.Export ") + kExportHelp};
        if (parameters.hasFlag(L"YUp") && parameters.hasFlag(L"ZUp"))
            return {1, L"Only one of /YUp and /ZUp can be."};
        if (unitsOf(parameters).size() + parameters.hasFlag(L"DisplayUnit") > 1)
            return {1, L"A file has lengths in one unit only."};
        if (parameters.hasFlag(L"Combine") && parameters.hasFlag(L"Separate"))
            return {1, L"Only one of /Combine and /Separate can be."};
        return TranscriptedCommandTextCommand::execute(parameters);
    }

protected:
    void fillContext(const TextCommandParameters& parameters, CommandContext& context) override
    {
        context.addArgument(CommandContext::pathArgumentName(),
                            Vs::TranscriptMgr::get()->locate(parameters[0]));
        if (parameters.parameters() > 1)
            context.addArgument(VeloraExportCmdDef::refinementArgumentName(), parameters[1]);
        ExportOptions options;
        options.combine = parameters.hasFlag(L"Combine");
        options.separate = parameters.hasFlag(L"Separate");
        options.selectedOnly = parameters.hasFlag(L"Selected");
        options.hiddenToo = parameters.hasFlag(L"Hidden");
        options.asText = parameters.hasFlag(L"Text");
        options.displayUnit = parameters.hasFlag(L"DisplayUnit");
        options.upAxis = parameters.hasFlag(L"YUp")   ? Vs::UpAxis::Y
                         : parameters.hasFlag(L"ZUp") ? Vs::UpAxis::Z
                                                      : Vs::UpAxis::Usual;
        if (const std::vector<std::string> units = unitsOf(parameters); !units.empty())
            options.unit = units.front();
        options.write(context);
    }
};

class TextCmdDesignUnit : public Vs::PythonEntry<TextCmdDesignUnit, Vs::TextCommand>
{
public:
    TextCmdDesignUnit() : PythonEntry(kArea, L"Unit", kUnitHelp, "%s", true, true) {}

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {0, Vs::LengthUnit::display().name};
        const Vs::LengthUnit* unit = Vs::LengthUnit::find(Vs::Strings::narrow(parameters[0]));
        if (!unit)
            return {1, L"\"" + parameters[0] + L"\" is not a unit of length. " + kUnitHelp};
        Vs::LengthUnit::display(*unit);
        return {0, unit->name};
    }
};

TextCmdDesignExport theExport;
TextCmdDesignUnit theUnit;

} // namespace
} // namespace Vu::Design
