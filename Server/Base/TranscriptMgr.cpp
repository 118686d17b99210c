#include "Server/Base/TranscriptMgr.h"

namespace Vs {

TranscriptMgr* TranscriptMgr::get()
{
    static auto* const manager = new TranscriptMgr;
    return manager;
}

} // namespace Vs
