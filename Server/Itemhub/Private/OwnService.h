#pragma once

#include "Server/Base/ChildProcess.h"
#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

namespace Vs::Itemhub {

/// The service that the program runs for its single user: a separate process that listens on this machine
/// only, keeps its data in the profile, and ends with the program, however that ends, by means of the pipe
/// between them. Main thread, except for start(), during which nobody may call the others.
class OwnService
{
public:
    static OwnService& get();

    /// Launches it unless it is running; a caller with other things to do meanwhile calls start() later.
    /// Throws as start() does.
    void launch();
    /// Starts it unless it is running, and returns the credentials for it, which differ in each run.
    /// Throws ItemhubException if it doesn't start.
    [[nodiscard]] Access start(const Watch& watch);
    /// False if it was never started, or has ended since.
    [[nodiscard]] bool isAlive();
    /// Tells it to end and waits until it has.
    void stop();

private:
    OwnService() = default;
    Access readAccess(const Watch& watch);

    int m_pipe = -1;
    ChildProcess m_process;
    Access m_access;
};

} // namespace Vs::Itemhub
