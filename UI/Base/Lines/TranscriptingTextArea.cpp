// The subject area "Transcripting": recordings and replays as lines. "Debug" has what the debugger's window
// offers.

#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptReplay.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Types/Uuid.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/SessionTranscriptingHelper.h"

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;
using Vs::TranscriptMgr;

constexpr const wchar_t* kArea = L"Transcripting";

constexpr AreaRow kTranscriptingAreaRow = {kArea, L"Text commands that record and replay transcripts", false,
                                           AreaRow::Checks::Flags};

constexpr AreaRow kDebugAreaRow = {L"Debug", L"Text commands of the debugger of transcripts", false,
                                   AreaRow::Checks::Flags};

class TextCmdTranscriptingStart : public Vs::PythonEntry<TextCmdTranscriptingStart, Vs::TextCommand>
{
public:
    TextCmdTranscriptingStart()
        : PythonEntry(kArea, L"Start",
                      L"<filename> Records from now on what is done; as Python if the name ends in .py.",
                      "%s", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        Vs::Status status;
        const std::wstring path = TranscriptMgr::get()->locate(parameters[0]);
        TranscriptMgr::get()->startRecording(path, TranscriptMgr::typeOf(path), status);
        return {status.isOk() ? 0u : 1u, status.toString()};
    }
};

class TextCmdTranscriptingStop : public Vs::PythonEntry<TextCmdTranscriptingStop, Vs::TextCommand>
{
public:
    TextCmdTranscriptingStop() : PythonEntry(kArea, L"Stop", L"Ends the recording.", "", true, true) {}

    TextCommandResult execute(const TextCommandParameters&) override
    {
        if (!TranscriptMgr::get()->recording())
            return {1, localized("NoRecording", "No transcript is being recorded.")};
        TranscriptMgr::get()->endRecording();
        return {0, {}};
    }
};

class TextCmdTranscriptingReplay : public Vs::PythonEntry<TextCmdTranscriptingReplay, Vs::TextCommand>
{
public:
    TextCmdTranscriptingReplay()
        : PythonEntry(kArea, L"Replay",
                      L"<filename> [<NAME=VALUE>...] [/KeepGoing] Runs a transcript, up to the first line "
                      L"that fails or to its end. It finds the parameters of this run, and those that are "
                      L"given.",
                      "%s", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        TranscriptMgr* transcripts = TranscriptMgr::get();
        const std::wstring path = transcripts->locate(parameters[0]);
        // A failure of the lines it runs is reported as its own.
        Vs::Status status;
        Vs::ReplayOptions options;
        options.status = &status;
        options.quiet = true;
        options.keepGoing = parameters.hasFlag(L"KeepGoing");
        for (unsigned i = 1; i < parameters.parameters(); ++i)
            if (!Vs::readParameter(Vs::Strings::toBytes(parameters[i]), options.parameters))
                return {1, localizedFormat("ReplayNoParameter",
                                           "\"%1%\" is not a parameter of the transcript: it has the form "
                                           "NAME=VALUE.",
                                           parameters[i])};
        // A recording keeps the transcript as one line.
        const TranscriptMgr::Unrecorded unrecorded;
        const Vs::ReplayResult result = transcripts->replay(path, TranscriptMgr::typeOf(path), options);
        if (result.cancelled)
            return {1, localizedFormat("ReplayCancelled", "The replay of %1% was cancelled.", path)};
        return {result.ok() ? 0u : 1u, status.toString()};
    }
};

class TextCmdTranscriptingDocument : public Vs::PythonEntry<TextCmdTranscriptingDocument, Vs::TextCommand>
{
public:
    TextCmdTranscriptingDocument()
        : PythonEntry(kArea, L"Document",
                      L"<uuid> [<guid of an asset> ...] Tells how the newest document was called while the "
                      L"transcript was recorded.",
                      "%s", false, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
        if (documents->documents() == 0)
            return {1, localized("NoDocumentToName", "There is no document to name.")};
        const Vs::Document* newest = documents->document(documents->documents() - 1);
        SessionTranscriptingHelper* helper = SessionTranscriptingHelper::get();
        helper->addUuidMapping(Vs::fromString(parameters[0]), newest->identifier());
        for (unsigned i = 1; i < parameters.parameters() && i <= newest->assets(); ++i)
            helper->addUuidMapping(Vs::fromString(parameters[i]), newest->asset(i - 1)->guid());
        return {0, {}};
    }
};

const SubjectArea<kTranscriptingAreaRow> kTranscriptingArea;
const SubjectArea<kDebugAreaRow> kDebugArea;
TextCmdTranscriptingStart kStart;
TextCmdTranscriptingStop kStop;
TextCmdTranscriptingReplay kReplay;
TextCmdTranscriptingDocument kDocument;

} // namespace
} // namespace Vu
