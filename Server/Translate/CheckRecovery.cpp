// The worker that reads recovery files before they are offered. It opens each as the program would and
// reports its findings over a pipe; it may crash on a file, or be killed, at any time.
//
// quillet-check-recovery FOLDER FILE...

#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Exchange/WorkerProtocol.h"
#include "Server/DataModel/Recovery/Private/RecoveryCheck.h"
#include "Server/Translate/Wall.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

using Vs::Recovery::RecoveryCheck;

constexpr uint64_t kMostUnpacked = uint64_t(4) << 30; // bytes, of a model that is packed again
constexpr int kNice = 5;

/// False if nobody listens any more.
bool tell(const std::string& text)
{
    return Vs::writeAll(Vs::Exchange::kWorkerPipe,
                        Vs::Exchange::encode({Vs::Exchange::WorkerMessage::Kind::Progress, 0, text}));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "A worker is started by quillet; it is of no use by itself.\n");
        return 2;
    }
    Vs::Translate::endWithParent(Vs::Exchange::kWorkerPipe);
    Vs::Translate::limitFiles(kMostUnpacked);
    // It runs while the program starts.
    static_cast<void>(nice(kNice));
    Vs::Translate::raiseWall({{argv[1]}, {}});
    // First a sign that it runs; then one answer for each file.
    bool heard = tell({});
    for (int i = 2; i < argc && heard; ++i)
        heard = tell(RecoveryCheck::byOpening(argv[i]).write());
    std::_Exit(0);
}
