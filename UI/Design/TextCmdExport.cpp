#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Types/LengthUnit.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Design/ExportDesignCmd.h"

namespace Vu::Design {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Design";
constexpr const wchar_t* kExportHelp =
    L"<filename> [<refinement>] [/Combine] [/DisplayUnit] Writes the active design as the suffix says: "
    L".stp .igs .brep .stl .obj .gltf .glb. The refinement is degrees,fraction,ratio,percent: the angle "
    L"between facets, the distance from the true surface, how many times longer than high a triangle may be, "
    L"its longest side";
constexpr const wchar_t* kUnitHelp =
    L"[<unit>] Tells or sets the unit of lengths that are shown: mm, cm, m, in, ft";

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
        return TranscriptedCommandTextCommand::execute(parameters);
    }

protected:
    void fillContext(const TextCommandParameters& parameters, CommandContext& context) override
    {
        context.addArgument(CommandContext::pathArgumentName(),
                            Vs::TranscriptMgr::get()->locate(parameters[0]));
        if (parameters.parameters() > 1)
            context.addArgument(VeloraExportCmdDef::refinementArgumentName(), parameters[1]);
        if (parameters.hasFlag(L"Combine"))
            context.addArgument(VeloraExportCmdDef::combineArgumentName(), 1);
        if (parameters.hasFlag(L"DisplayUnit"))
            context.addArgument(VeloraExportCmdDef::displayUnitArgumentName(), 1);
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
