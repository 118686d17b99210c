#include "UI/Commands/Transcripts/ReplayTasks.h"

#include "Server/Base/Status.h"
#include "Server/Base/TranscriptMgr.h"

namespace Vu::Commands {
namespace {

using Play = void (Vs::TranscriptMgr::*)(const std::wstring&, Vs::Status&, Vs::ETranscriptType);

void playLoaded(Play play)
{
    Vs::TranscriptMgr* transcripts = Vs::TranscriptMgr::get();
    const Vs::ScriptDebugInfo* debug = transcripts->scriptDebugInfo();
    const std::wstring path = debug ? debug->scriptPath() : std::wstring();
    Vs::Status status;
    if (!path.empty())
        (transcripts->*play)(path, status, Vs::kTextTranscript);
}

} // namespace

bool ReplayTranscriptTask::run()
{
    Vs::Status status;
    Vs::TranscriptMgr::get()->replay(m_path, status, Vs::TranscriptMgr::typeOf(m_path));
    return true;
}

bool ReplayTextTranscriptTask::run()
{
    playLoaded(&Vs::TranscriptMgr::replay);
    return true;
}

bool StepReplayTextTranscriptTask::run()
{
    playLoaded(&Vs::TranscriptMgr::stepReplay);
    return true;
}

} // namespace Vu::Commands
