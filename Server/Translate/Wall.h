#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Vs::Translate {

// A worker reads what strangers wrote, with libraries that a crafted file can exploit. Before it begins, it
// gives up whatever it won't need, so that a stranger who takes control of it has gained nothing.

/// The files that a worker can still access, beside the system's own libraries.
struct Wall
{
    std::vector<std::string> readable; ///< Files, and folders with everything in them.
    std::string writable;              ///< A file that exists already.
    std::string folder; ///< One in which files can be read, created, replaced and removed; empty for none.
    /// This process can start processes, which are behind the same wall until they raise their own, and kill
    /// them. For a process that handles the file only with this program's own code.
    bool mayFork = false;
};

/// Which parts of a wall are in force.
struct WallParts
{
    bool files = false; ///< No other files can be opened, created or removed (Landlock).
    bool calls = false; ///< No network, no other processes, no system settings (seccomp).
};

/// Raises the wall around this process, permanently. Not all running kernels and containers offer its parts;
/// what they lack is left out. No second thread may have been started yet.
WallParts raiseWall(const Wall& wall);

/// Which parts are in force in this process; none before it was raised.
WallParts raisedWall();

/// Limits the size of any file that is written, and turns off core dumps, which would take longer than
/// everything else.
void limitFiles(uint64_t written);

/// Limits the address space. Call it behind the wall, which needs some itself.
void limitMemory(uint64_t memory);

/// Ends this process together with the one that forked it.
void endWithProcess(int parent);

/// Ends this process together with the one that started it, however that one dies. `pipe` is a pipe
/// descriptor that the other one reads from.
void endWithParent(int pipe);

} // namespace Vs::Translate
