// The lines of the subject area "Design" that change what is there: each runs an editing command with its
// parameters as arguments, and to its end.

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Design/Edit/EditCmd.h"
#include "UI/Design/Edit/PlaceCmds.h"

#include <algorithm>
#include <span>

namespace Vu::Design {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Design";

enum class Kind { Value, Path };

/// A parameter, and the input that it fills.
struct Place
{
    const char* input;
    Kind kind = Kind::Value;
};

struct EditLine
{
    const wchar_t* name;
    const wchar_t* help;
    Info* (*info)();
    size_t least; ///< How many parameters there must be.
    std::span<const Place> places;
    bool rest = false; ///< The last place takes all that follow.
};

constexpr Place kMovePlaces[] = {{"Components", Kind::Path}, {"Dx"}, {"Dy"}, {"Dz"}};
constexpr Place kRotatePlaces[] = {
    {"Components", Kind::Path}, {"Axis"}, {"Angle"}, {"About"}, {"X"}, {"Y"}, {"Z"}};

// clang-format off
constexpr EditLine kMove   = {L"Move",   L"<path> <dx> <dy> <dz> Moves the component along the axes; lengths as \"12.5 mm\" or \"1/2 in\"", &EditCmdDef<MoveCmd>::info, 4, kMovePlaces};
constexpr EditLine kCopy   = {L"Copy",   L"<path> <dx> <dy> <dz> Puts one more of the component that far from it", &EditCmdDef<CopyCmd>::info, 4, kMovePlaces};
constexpr EditLine kRotate = {L"Rotate", L"<path> <axis> <angle> [Middle|Origin|Point <x> <y> <z>] Turns the component about X, Y or Z through its middle, the origin or a point", &EditCmdDef<RotateCmd>::info, 3, kRotatePlaces};
// clang-format on

template <const EditLine& kLine>
class TextCmdEdit : public Vs::PythonEntry<TextCmdEdit<kLine>, TranscriptedCommandTextCommand>
{
public:
    TextCmdEdit()
        : Vs::PythonEntry<TextCmdEdit<kLine>, TranscriptedCommandTextCommand>(kArea, kLine.name, kLine.help,
                                                                              "", false, kLine.info()->key())
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() < kLine.least ||
            (!kLine.rest && parameters.parameters() > kLine.places.size()))
            return {1, std::wstring(L"Usage: ") + kArea + L"." + kLine.name + L" " + kLine.help};
        return TranscriptedCommandTextCommand::execute(parameters);
    }

protected:
    void fillContext(const TextCommandParameters& parameters, CommandContext& context) override
    {
        for (unsigned i = 0; i < parameters.parameters(); ++i) {
            const Place& place = kLine.places[std::min<size_t>(i, kLine.places.size() - 1)];
            const Vs::UniqueString* key = Vs::UniqueString::find(place.input, true);
            if (place.kind == Kind::Value)
                context.addArgument(key, parameters[i]);
            else
                context.addArgument(key,
                                    context.argumentAsString(key) + L' ' + Vs::Strings::quote(parameters[i]));
        }
        context.addArgument(EditCmd::commitArgumentName(), 1);
    }
};

TextCmdEdit<kMove> theMove;
TextCmdEdit<kCopy> theCopy;
TextCmdEdit<kRotate> theRotate;

} // namespace
} // namespace Vu::Design
