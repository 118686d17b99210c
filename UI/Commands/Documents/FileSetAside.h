#pragma once

#include <boost/filesystem/path.hpp>

namespace Vu::Commands {

/// Takes a write-protected file out of the way of a save, for as long as it lives: the save must not stop at
/// it, and a save that fails must not cost it. Any other file stays in its place, since the save replaces it
/// as a whole, and at no moment is there none of that name.
class FileSetAside
{
public:
    /// Nothing happens if there is no such file, or if it can't be moved; the save then tells why.
    explicit FileSetAside(boost::filesystem::path path);
    /// Deletes the file if another has taken its place, and brings it back otherwise.
    ~FileSetAside();
    FileSetAside(const FileSetAside&) = delete;
    FileSetAside& operator=(const FileSetAside&) = delete;

private:
    boost::filesystem::path m_path;
    boost::filesystem::path m_aside; ///< Empty if nothing was moved.
};

} // namespace Vu::Commands
