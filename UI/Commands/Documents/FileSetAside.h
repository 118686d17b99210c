#pragma once

#include <boost/filesystem/path.hpp>

namespace Vu::Commands {

/// Moves a write-protected file out of the way of a save while it lives: the save must not fail because of
/// it, and a failed save must not lose it. Any other file stays in its place, since the save replaces it
/// atomically, so that a file of that name exists at all times.
class FileSetAside
{
public:
    /// Does nothing if there is no such file, or if it can't be moved; the save then reports why.
    explicit FileSetAside(boost::filesystem::path path);
    /// Deletes the file if another has taken its place, and restores it otherwise.
    ~FileSetAside();
    FileSetAside(const FileSetAside&) = delete;
    FileSetAside& operator=(const FileSetAside&) = delete;

private:
    boost::filesystem::path m_path;
    boost::filesystem::path m_aside; ///< Empty if nothing was moved.
};

} // namespace Vu::Commands
