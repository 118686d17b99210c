#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/ForwardedRun.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Design/OpenCmds.h"
#include "UI/Design/Primitives/PrimitiveCmds.h"
#include "UI/Design/Primitives/PrimitiveTable.h"
#include "UI/Design/Samples.h"
#include "UI/Design/ShowDesign.h"

#include <boost/algorithm/string/join.hpp>

namespace Vu::Design {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Design";

// clang-format off
/// One row per primitive: its line, and the definition that it runs.
struct PrimitiveTextRow
{
    const wchar_t* name;
    const wchar_t* help;
    const char* format;
    const PrimitiveRow& primitive;
};

constexpr PrimitiveTextRow kBoxLine      = {L"Box",      L"<dx> <dy> <dz> [<x,y,z> [<direction>]] Adds a box of these sizes in mm, with its corner at the point and its height in the direction, such as 0,0,1", "%f%f%f%p3%v", kBox};
constexpr PrimitiveTextRow kCylinderLine = {L"Cylinder", L"<radius> <height> [<x,y,z> [<direction>]] Adds a cylinder of these sizes in mm, standing on the point in the direction", "%f%f%p3%v", kCylinder};
constexpr PrimitiveTextRow kSphereLine   = {L"Sphere",   L"<radius> [<x,y,z> [<direction>]] Adds a sphere of this radius in mm about the point", "%f%p3%v", kSphere};
constexpr PrimitiveTextRow kConeLine     = {L"Cone",     L"<radius> <radius at top> <height> [<x,y,z> [<direction>]] Adds a cone of these sizes in mm, standing on the point in the direction; one radius may be 0", "%f%f%f%p3%v", kCone};
constexpr PrimitiveTextRow kTorusLine    = {L"Torus",    L"<radius> <radius of the tube> [<x,y,z> [<direction>]] Adds a ring of these sizes in mm about the point and the direction", "%f%f%p3%v", kTorus};
// clang-format on

constexpr AreaRow kDesignAreaRow = {kArea, L"Commands that make designs and add parts to them"};

template <const PrimitiveTextRow& kRow>
class TextCmdPrimitive : public Vs::PythonEntry<TextCmdPrimitive<kRow>, TranscriptedCommandTextCommand>
{
public:
    TextCmdPrimitive()
        : Vs::PythonEntry<TextCmdPrimitive<kRow>, TranscriptedCommandTextCommand>(
              kArea, kRow.name, kRow.help, kRow.format, false, kRow.primitive.look.key)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const size_t sizes = kRow.primitive.sizes.size();
        if (parameters.parameters() < sizes || parameters.parameters() > sizes + 2)
            return {1, std::wstring(L"Usage: ") + kArea + L"." + kRow.name + L" " + kRow.help};
        return TranscriptedCommandTextCommand::execute(parameters);
    }

protected:
    void fillContext(const TextCommandParameters& parameters, CommandContext& context) override
    {
        unsigned i = 0;
        for (const PrimitiveRow::Size& size : kRow.primitive.sizes)
            context.addArgument(Vs::UniqueString::find(size.name, true), parameters.real(i++));
        if (i < parameters.parameters())
            context.addArgument(PrimitiveCmdDef::originArgumentName(), parameters[i++]);
        if (i < parameters.parameters())
            context.addArgument(PrimitiveCmdDef::directionArgumentName(), parameters[i]);
    }
};

class TextCmdDesignNew : public Vs::PythonEntry<TextCmdDesignNew, Vs::TextCommand>
{
public:
    TextCmdDesignNew()
        : PythonEntry(kArea, L"New", L"Makes a new document with an empty design", "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        Vs::Status status;
        if (Vs::Document* document = createDesign(status))
            showDesign(document, status);
        return answerOf(status);
    }
};

class TextCmdDesignSample : public Vs::PythonEntry<TextCmdDesignSample, Vs::TextCommand>
{
public:
    TextCmdDesignSample()
        : PythonEntry(kArea, L"Sample",
                      L"[<filename>] Opens the file, or without one makes a small model to look at", "%s",
                      true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        Vs::Status status;
        if (parameters.parameters() == 0 || parameters[0].empty()) {
            makeSample(status);
            return answerOf(status);
        }
        CommandContext context = CommandContext::emptyContext();
        context.addArgument(CommandContext::pathArgumentName(),
                            Vs::TranscriptMgr::get()->locate(parameters[0]));
        const ForwardedRun forwarded;
        return answerOf(CommandMgr::get()->executeCommand(VeloraOpenDocumentCmdDef::info()->key(), context));
    }
};

class TextCmdDesignOpenSample : public Vs::PythonEntry<TextCmdDesignOpenSample, Vs::TextCommand>
{
public:
    TextCmdDesignOpenSample()
        : PythonEntry(kArea, L"OpenSample",
                      L"[<name>] Opens a sample of the home screen in a new document, or without one lists "
                      L"their names",
                      "%s", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {0, boost::algorithm::join(sampleNames(), L"\n")};
        Vs::Status status;
        openSample(parameters[0], status);
        return answerOf(status);
    }
};

const SubjectArea<kDesignAreaRow> theArea;
TextCmdPrimitive<kBoxLine> theBox;
TextCmdPrimitive<kCylinderLine> theCylinder;
TextCmdPrimitive<kSphereLine> theSphere;
TextCmdPrimitive<kConeLine> theCone;
TextCmdPrimitive<kTorusLine> theTorus;
TextCmdDesignNew theNew;
TextCmdDesignSample theSample;
TextCmdDesignOpenSample theOpenSample;

} // namespace
} // namespace Vu::Design
