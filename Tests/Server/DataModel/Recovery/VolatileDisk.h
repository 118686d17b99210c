#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

/// What a disk has of a folder after a power failure: what wasn't flushed may be lost, names independently of
/// contents and in any order. It records what a process and its children do to files, and turns the folder
/// into something that a disk could have kept. All its records are in a folder next to it, so that processes
/// share them.
class VolatileDisk
{
public:
    /// Everything in the folder now is on the disk. What an earlier one recorded in `notes` is forgotten.
    VolatileDisk(std::filesystem::path folder, std::filesystem::path notes);

    void opened(const std::string& path, bool existed) const;
    void flushed(int descriptor) const;
    /// Before it is done.
    void renaming(const std::string& from, const std::string& to) const;
    void removing(const std::string& path) const;

    /// The power fails: removes from the folder what a disk could lose, depending on the seed.
    void lose(uint32_t seed) const;

private:
    struct Change
    {
        std::vector<std::pair<std::string, ino_t>>
            names;                ///< What they refer to afterwards; 0 if they are gone.
        std::vector<bool> onDisk; ///< By name.
    };
    struct State
    {
        std::map<std::string, ino_t> names; ///< As they were at first.
        std::vector<Change> changes;        ///< In order.
        std::map<ino_t, off_t> contents;    ///< How much of the written ones is on the disk.
        std::set<std::string> folders;      ///< Those added since, whose names aren't on the disk.
    };

    bool isWatched(const std::string& path) const;
    void note(const std::string& line) const;
    /// Keeps the content, whatever happens to its name.
    ino_t hold(const std::string& path) const;
    void before(const std::string& path) const;
    State read() const;
    void restoreNames(const State& state, uint32_t seed) const;

    std::filesystem::path m_folder, m_notes;
};
