#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Vs::Translate {

// A worker reads what strangers wrote, with libraries that a crafted file can lead astray. Before it begins,
// it gives up whatever it won't need, so that a stranger who gets hold of it has gained nothing.

/// The files that a worker goes on seeing, beside the system's own libraries.
struct Wall
{
    std::vector<std::string> readable; ///< Files, and folders with all that lies in them.
    std::string writable;              ///< A file that is there already.
    std::string folder; ///< One in which files can be read, made, replaced and removed; empty for none.
    /// Processes can be started from this one, which stand behind the same wall until they raise one of their
    /// own, and be ended. For one that touches nothing but with code of this program.
    bool mayFork = false;
};

/// Which parts of a wall stand.
struct WallParts
{
    bool files = false; ///< No other files can be opened, made or removed (Landlock).
    bool calls = false; ///< No network, no other process, no setting of the system (seccomp).
};

/// Raises the wall around this process, for good. Not all running kernels and containers offer its parts;
/// what they lack is left out. No second thread may have been started yet.
WallParts raiseWall(const Wall& wall);

/// Which parts stand around this process; none before it was raised.
WallParts raisedWall();

/// No more than so many bytes in any file that is written, and no dump of a crash, which would take longer
/// than all the rest.
void limitFiles(uint64_t written);

/// No more than so many bytes of address space. Behind the wall, which needs some itself.
void limitMemory(uint64_t memory);

/// Ends this process with the one that forked it.
void endWithProcess(int parent);

/// Ends this process with the one that started it, whatever that dies of. `pipe` is a descriptor of a pipe
/// that the other one reads.
void endWithParent(int pipe);

} // namespace Vs::Translate
