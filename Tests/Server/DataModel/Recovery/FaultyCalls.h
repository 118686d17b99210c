#pragma once

#include "Server/DataModel/Native/FileCalls.h"
#include "Tests/Server/DataModel/Recovery/VolatileDisk.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

/// At one call, of this process or of a child that it forked, something happens. Both count the calls
/// together.
class FaultyCalls : public Vs::Native::FileCalls
{
public:
    enum class Kind {
        None,
        Kill,      ///< Of the process that makes the call.
        Error,     ///< With `code`.
        Shorter,   ///< At all: half of what is asked for, and every second one is interrupted.
        Garble,    ///< At all: the disk keeps something else than it was told.
        PowerLoss, ///< Of both processes, and of what the disk has not been made to keep.
    };
    int code = 0;
    uint32_t seed = 0; ///< Of what is lost.

    FaultyCalls();
    /// From now on, in a child that is forked from now on as well.
    void arm(Kind kind, int at = 0);
    /// Since the last `arm`.
    int count() const { return m_count->load(); }
    /// What is done in that folder is noted in the other from now on, for a loss of power.
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
    std::atomic<int>* m_count; ///< In memory that children have in common.
    pid_t m_main;
    std::optional<VolatileDisk> m_disk;
};
