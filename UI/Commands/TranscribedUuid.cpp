#include "UI/Commands/TranscribedUuid.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/Types/Uuid.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Session/SessionTranscriptingHelper.h"

namespace Vu::Commands {

void transcribeUuid(CommandContext& context, const Vs::UniqueString* key, const boost::uuids::uuid& made)
{
    const Vs::TranscriptMgr* transcripts = Vs::TranscriptMgr::get();
    // Read before it is replaced, since a replay may be recorded.
    const std::wstring recorded = context.argumentAsString(key);
    if (transcripts->recording())
        context.addArgument(key, Vs::fromUuid(made));
    if (transcripts->replaying())
        SessionTranscriptingHelper::get()->addUuidMapping(Vs::fromString(recorded), made);
}

} // namespace Vu::Commands
