// The lines of the subject area "Design" that edit the model: each runs an editing command to its end, with
// its parameters as arguments.

#include "Server/Base/Exception.h"
#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Design/Edit/ColourCmd.h"
#include "UI/Design/Edit/PatternCmds.h"
#include "UI/Design/Edit/PlaceCmds.h"
#include "UI/Design/Edit/SolidCmds.h"

#include <span>
#include <vector>

namespace Vu::Design {
namespace {

using Vs::TextCommandParameters;

constexpr const wchar_t* kArea = L"Design";

/// A parameter fills the input of that name.
struct Place
{
    const char* input;
};

struct EditLine
{
    const wchar_t* name;
    const wchar_t* help;
    Info* (*info)();
    size_t least; ///< The required number of parameters.
    std::span<const Place> places;
    bool rest = false;   ///< The last place takes all remaining paths.
    size_t together = 0; ///< This many of the last places are filled all or not at all.

    bool takes(size_t count) const
    {
        return count >= least && (rest || count + together <= places.size() || count == places.size());
    }
};

constexpr Place kMovePlaces[] = {{"Components"}, {"Dx"}, {"Dy"}, {"Dz"}};
constexpr Place kCombinePlaces[] = {{"Target"}, {"Tools"}};
constexpr Place kFilletPlaces[] = {{"Radius"}, {"Edges"}};
constexpr Place kChamferPlaces[] = {{"Distance"}, {"Edges"}};
constexpr Place kMirrorPlaces[] = {{"Components"}, {"Across"}, {"At"}};
constexpr Place kLinearPlaces[] = {{"Components"}, {"Axis"},          {"Spacing"},    {"Count"},
                                   {"SecondAxis"}, {"SecondSpacing"}, {"SecondCount"}};
constexpr Place kCircularPlaces[] = {{"Components"}, {"Axis"}, {"Angle"}, {"Count"},
                                     {"About"},      {"X"},    {"Y"},     {"Z"}};
constexpr Place kColourPlaces[] = {{"Colour"}, {"Objects"}};
constexpr Place kRotatePlaces[] = {{"Components"}, {"Axis"}, {"Angle"}, {"About"}, {"X"}, {"Y"}, {"Z"}};

// clang-format off
constexpr EditLine kMove   = {L"Move",   L"<path> <dx> <dy> <dz> Moves the component along the axes; lengths as \"12.5 mm\" or \"1/2 in\"", &EditCmdDef<MoveCmd>::info, 4, kMovePlaces};
constexpr EditLine kCopy   = {L"Copy",   L"<path> <dx> <dy> <dz> Puts a copy of the component that far from it", &EditCmdDef<CopyCmd>::info, 4, kMovePlaces};
constexpr EditLine kRotate = {L"Rotate", L"<path> <axis> <angle> [Middle|Origin|Point <x> <y> <z>] Turns the component about X, Y or Z through its middle, the origin or a point", &EditCmdDef<RotateCmd>::info, 3, kRotatePlaces, false, 3};

constexpr EditLine kJoin      = {L"Join",      L"<target> <tool> ... [/Keep] Makes one body of the target and the others, which are used up unless they are to be kept", &EditCmdDef<JoinCmd>::info, 2, kCombinePlaces, true};
constexpr EditLine kSubtract  = {L"Subtract",  L"<target> <tool> ... [/Keep] Takes the others away from the target", &EditCmdDef<SubtractCmd>::info, 2, kCombinePlaces, true};
constexpr EditLine kIntersect = {L"Intersect", L"<target> <tool> ... [/Keep] Leaves of the target what it has in common with the others", &EditCmdDef<IntersectCmd>::info, 2, kCombinePlaces, true};
constexpr EditLine kFillet    = {L"Fillet",    L"<radius> <edge> ... Rounds the edges, such as Box1/Edge4", &EditCmdDef<FilletCmd>::info, 2, kFilletPlaces, true};
constexpr EditLine kChamfer   = {L"Chamfer",   L"<distance> <edge> ... Cuts the edges off, at the distance on both sides", &EditCmdDef<ChamferCmd>::info, 2, kChamferPlaces, true};
constexpr EditLine kMirror    = {L"Mirror",    L"<path> X|Y|Z [<at>] Puts the component's mirror image on the other side of the plane across the axis", &EditCmdDef<MirrorCmd>::info, 2, kMirrorPlaces};
constexpr EditLine kLinear    = {L"Pattern",   L"<path> <axis> <spacing> <count> [<axis> <spacing> <count>] Repeats the component along X, Y or Z, or along two of them as a grid", &EditCmdDef<LinearPatternCmd>::info, 4, kLinearPlaces, false, 3};
constexpr EditLine kCircular  = {L"CircularPattern", L"<path> <axis> <angle> <count> [Origin|Point <x> <y> <z>] Repeats the component around X, Y or Z, evenly over the angle", &EditCmdDef<CircularPatternCmd>::info, 4, kCircularPlaces, false, 3};
constexpr EditLine kColour    = {L"Colour",    L"<colour> <path> ... Colours components, bodies, solids or faces: Red, Orange, Yellow, Green, Teal, Blue, Violet, White, Grey, Black, #rrggbb, #rrggbbaa with an opacity, or None of their own", &EditCmdDef<ColourCmd>::info, 2, kColourPlaces, true};
// clang-format on

void fill(const Place& place, const std::wstring& text, CommandContext& context)
{
    context.addArgument(Vs::UniqueString::find(place.input, true), text);
}

template <const EditLine& kLine>
class TextCmdEdit : public Vs::PythonEntry<TextCmdEdit<kLine>, TranscriptedCommandTextCommand>
{
public:
    TextCmdEdit()
        : Vs::PythonEntry<TextCmdEdit<kLine>, TranscriptedCommandTextCommand>(kArea, kLine.name, kLine.help,
                                                                              "", false, kLine.info()->key())
    {
    }

    // The line itself implies that it runs to its end.
    std::vector<std::wstring> parametersFor(const CommandContext& context,
                                            std::vector<std::wstring> texts) const override
    {
        for (size_t i = 0; i < context.arguments() && i < texts.size(); ++i)
            if (context.argumentName(i) == EditCmd::commitArgumentName()) {
                texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(i));
                break;
            }
        return texts;
    }

protected:
    void fillContext(const TextCommandParameters& parameters, CommandContext& context) override
    {
        if (!kLine.takes(parameters.parameters()))
            throw Vs::Exception(std::wstring(L"Usage: ") + kArea + L"." + kLine.name + L" " + kLine.help);
        std::vector<std::wstring> rest;
        for (unsigned i = 0; i < parameters.parameters(); ++i)
            if (kLine.rest && i + 1 >= kLine.places.size())
                rest.push_back(parameters[i]);
            else
                fill(kLine.places[i], parameters[i], context);
        if (kLine.rest)
            fill(kLine.places.back(), SelectionCommandInput::valueOf(rest), context);
        if (parameters.hasFlag(L"Keep"))
            context.addArgument(Vs::UniqueString::find("Keep", true), 1);
        context.addArgument(EditCmd::commitArgumentName(), 1);
    }
};

TextCmdEdit<kMove> theMove;
TextCmdEdit<kCopy> theCopy;
TextCmdEdit<kRotate> theRotate;
TextCmdEdit<kJoin> theJoin;
TextCmdEdit<kSubtract> theSubtract;
TextCmdEdit<kIntersect> theIntersect;
TextCmdEdit<kFillet> theFillet;
TextCmdEdit<kChamfer> theChamfer;
TextCmdEdit<kMirror> theMirror;
TextCmdEdit<kLinear> theLinear;
TextCmdEdit<kCircular> theCircular;
TextCmdEdit<kColour> theColour;

} // namespace
} // namespace Vu::Design
