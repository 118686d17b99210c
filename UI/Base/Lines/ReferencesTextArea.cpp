// The subject area "References": manages the values that checks and metrics compare against.

#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Validation/References.h"

#include <array>

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"References";
constexpr const wchar_t* kModeHelp =
    L"[<mode>] Shows or sets what checks and metrics do with their references: Fill makes those that are "
    L"missing, Update makes all of them again, Compare makes none and fails where one is missing";

/// In the order of References::Mode.
constexpr std::array kModes = {L"Fill", L"Update", L"Compare"};

constexpr AreaRow kReferencesAreaRow = {
    kArea, L"Commands about the values that checks and metrics compare with", true};

class TextCmdReferencesMode : public Vs::PythonEntry<TextCmdReferencesMode, Vs::TextCommand>
{
public:
    TextCmdReferencesMode() : PythonEntry(kArea, L"Mode", kModeHelp, "%s", false, true) {}

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {0, kModes[size_t(References::mode())]};
        for (size_t i = 0; i < kModes.size(); ++i)
            if (parameters[0] == kModes[i]) {
                References::mode(References::Mode(i));
                return {0, {}};
            }
        return {1, localizedFormat("ReferencesNoMode",
                                   "\"%1%\" is not a mode: it is Fill, Update or Compare.", parameters[0])};
    }
};

class TextCmdReferencesFile : public Vs::PythonEntry<TextCmdReferencesFile, Vs::TextCommand>
{
public:
    TextCmdReferencesFile()
        : PythonEntry(kArea, L"File", L"Prints the file in which checks find their references now", "", false,
                      true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        return {0, References::currentFile(L"checks").wstring()};
    }
};

const SubjectArea<kReferencesAreaRow> theArea;
TextCmdReferencesMode theMode;
TextCmdReferencesFile theFile;

} // namespace
} // namespace Vu
