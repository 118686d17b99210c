#pragma once

#include <filesystem>

namespace TestSupport {

/// Folders for everything that a process of tests and its children may write outside of their own files. They
/// lie in one folder below the system's temporary one, which goes with this object. Those that a killed
/// process left are removed when the next object is made.
class OwnFolders
{
public:
    OwnFolders();
    ~OwnFolders();
    OwnFolders(const OwnFolders&) = delete;
    OwnFolders& operator=(const OwnFolders&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    /// Points this process's TMPDIR, HOME and XDG variables to the folders, and takes away what else of the
    /// user's desktop and language could reach a test.
    void enter() const;

private:
    std::filesystem::path m_path;
    int m_lock = -1;
};

} // namespace TestSupport
