#pragma once

#include <boost/filesystem/path.hpp>

#include <functional>
#include <optional>
#include <string>

namespace Vs::Cloud {

/// Notes on this machine of what is made on a drive for a while, so that what a killed program left there can
/// be removed: not every server lists hidden names. A note is a file with a path of the drive in it, which
/// its program has locked as long as it lives. Where notes can't be written there are none.
class Leftovers
{
public:
    /// The folder of the notes, which is made with the first one. Without it there are none.
    void keepIn(boost::filesystem::path folder) { m_folder = std::move(folder); }

    /// What something is noted by, from before it is made.
    class Note
    {
    public:
        Note() = default;
        ~Note();
        Note(Note&& other) noexcept;
        Note& operator=(Note&& other) noexcept;
        Note(const Note&) = delete;
        Note& operator=(const Note&) = delete;

        /// It is gone from the drive. Else the note stays, for the next program to see to it.
        void drop();

    private:
        friend class Leftovers;
        Note(boost::filesystem::path file, int handle) : m_file(std::move(file)), m_handle(handle) {}

        boost::filesystem::path m_file;
        int m_handle = -1;
    };
    [[nodiscard]] Note note(const std::string& path) const;

    /// Calls `remove` with each path whose program is no more, and forgets those of which it answers that
    /// they are gone.
    void clear(const std::function<bool(const std::string& path)>& remove) const;

private:
    boost::filesystem::path m_folder;
};

} // namespace Vs::Cloud
