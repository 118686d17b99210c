#pragma once

#include <boost/filesystem/path.hpp>

#include <functional>
#include <optional>
#include <string>

namespace Vs::Cloud {

/// Local notes of what is temporarily created on a drive, so that what a killed program left there can be
/// removed: not every server lists hidden names. A note is a file that contains a path on the drive, and is
/// locked by its program as long as that runs. If notes can't be written, there are none.
class Leftovers
{
public:
    /// The folder for the notes, created with the first one. Without a folder there are no notes.
    void keepIn(boost::filesystem::path folder) { m_folder = std::move(folder); }

    /// The note of an object, written before the object is created.
    class Note
    {
    public:
        Note() = default;
        ~Note();
        Note(Note&& other) noexcept;
        Note& operator=(Note&& other) noexcept;
        Note(const Note&) = delete;
        Note& operator=(const Note&) = delete;

        /// The object is gone from the drive. Otherwise the note stays, and the next program takes care of
        /// it.
        void drop();

    private:
        friend class Leftovers;
        Note(boost::filesystem::path file, int handle) : m_file(std::move(file)), m_handle(handle) {}

        boost::filesystem::path m_file;
        int m_handle = -1;
    };
    [[nodiscard]] Note note(const std::string& path) const;

    /// Calls `remove` with each path whose program is no longer running, and deletes the notes of those for
    /// which it returns that they are gone.
    void clear(const std::function<bool(const std::string& path)>& remove) const;

private:
    boost::filesystem::path m_folder;
};

} // namespace Vs::Cloud
