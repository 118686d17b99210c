#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

/// What a disk has of a folder when the power goes: what wasn't flushed may be lost, names apart from
/// contents and in any order. It is told what a process and its children do to files, and makes of the folder
/// what a disk could have kept. All that it knows is in a folder beside, so that processes have it in common.
class VolatileDisk
{
public:
    /// Everything that stands in the folder now is on the disk. What an earlier one noted in `notes` is
    /// forgotten.
    VolatileDisk(std::filesystem::path folder, std::filesystem::path notes);

    void opened(const std::string& path, bool existed) const;
    void flushed(int descriptor) const;
    /// Before it is done.
    void renaming(const std::string& from, const std::string& to) const;
    void removing(const std::string& path) const;

    /// The power goes: takes from the folder what a disk could lose, as the seed says.
    void lose(uint32_t seed) const;

private:
    struct Change
    {
        std::vector<std::pair<std::string, ino_t>>
            names;                ///< What they stand for afterwards; 0 if they are gone.
        std::vector<bool> onDisk; ///< By name.
    };
    struct State
    {
        std::map<std::string, ino_t> names; ///< As they were first.
        std::vector<Change> changes;        ///< In their order.
        std::map<ino_t, off_t> contents;    ///< How much of them is on the disk, of those that were written.
        std::set<std::string> folders;      ///< That came since, and whose names aren't on the disk.
    };

    bool isWatched(const std::string& path) const;
    void note(const std::string& line) const;
    /// Keeps what stands there, whatever happens to its name.
    ino_t hold(const std::string& path) const;
    void before(const std::string& path) const;
    State read() const;
    void restoreNames(const State& state, uint32_t seed) const;

    std::filesystem::path m_folder, m_notes;
};
