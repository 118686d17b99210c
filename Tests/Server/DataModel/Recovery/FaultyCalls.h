#pragma once

#include "Server/DataModel/Native/FileCalls.h"
#include "Tests/Server/DataModel/Recovery/VolatileDisk.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

/// Makes something happen at one call, of this process or of a child that it forked. Both count the calls
/// together.
class FaultyCalls : public Vs::Native::FileCalls
{
public:
    enum class Kind {
        None,
        Kill,      ///< Kills the process that makes the call.
        Error,     ///< Fails with `code`.
        Shorter,   ///< At all calls: half of what is requested, and every second one is interrupted.
        Garble,    ///< At all calls: the disk stores something else than it was given.
        PowerLoss, ///< Ends both processes, and loses what the disk hasn't been made to keep.
    };
    int code = 0;
    uint32_t seed = 0; ///< Decides what is lost.

    FaultyCalls();
    /// From now on, also in a child that is forked later.
    void arm(Kind kind, int at = 0);
    /// Since the last `arm`.
    int count() const { return m_count->load(); }
    /// Records what is done in that folder in the other one from now on, for a power failure.
    void onVolatileDisk(const std::string& folder, const std::string& notes)
    {
        m_disk.emplace(folder, notes);
    }

    int open(const char* path, int flags, mode_t mode) override;
    ssize_t write(int descriptor, const void* data, size_t size) override;
    ssize_t writeAt(int descriptor, const void* data, size_t size, off_t place) override;
    ssize_t copy(int from, off_t* place, int to, size_t size) override;
    int lock(int descriptor) override;
    int rights(int descriptor, mode_t mode) override;
    int flush(int descriptor) override;
    int close(int descriptor) override;
    int rename(const char* from, const char* to) override;
    int remove(const char* path) override;

private:
    bool fails();
    [[noreturn]] void losePower() const;
    size_t shortened(size_t size) const;

    Kind m_kind = Kind::None;
    int m_at = 0;
    std::atomic<int>* m_count; ///< In memory shared with child processes.
    pid_t m_main;
    std::optional<VolatileDisk> m_disk;
};
