#pragma once

#include "Server/Base/ChildProcess.h"
#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

namespace Vs::Itemhub {

/// The service that the program runs for its one user: a process of its own that listens on this machine
/// alone, keeps its data in the profile, and ends with the program, however that ends, by the pipe between
/// them. Main thread, but for start(), during which nobody may call the others.
class OwnService
{
public:
    static OwnService& get();

    /// Has it started unless it runs; whoever has something else to do meanwhile calls start() later. Throws
    /// as that does.
    void launch();
    /// Starts it unless it runs, and gives the way to sign in to it, which is another one in each run. Throws
    /// ItemhubException if it doesn't start.
    [[nodiscard]] Access start(const Watch& watch);
    /// False if it was never started, or has ended since.
    [[nodiscard]] bool isAlive();
    /// Tells it to end and waits for that.
    void stop();

private:
    OwnService() = default;
    Access readAccess(const Watch& watch);

    int m_pipe = -1;
    ChildProcess m_process;
    Access m_access;
};

} // namespace Vs::Itemhub
