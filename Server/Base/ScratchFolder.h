#pragma once

#include <string>

namespace Vs {

/// A new folder for what nobody needs later, which goes with the object, with everything in it. Only this
/// user can look into it. Any thread.
class ScratchFolder
{
public:
    /// In the temporary folder.
    ScratchFolder();
    explicit ScratchFolder(const std::string& parent);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// Empty if there can't be one, for which `why` is the system's reason.
    const std::string& path() const { return m_path; }
    const std::string& why() const { return m_why; }

private:
    std::string m_path;
    std::string m_why;
};

} // namespace Vs
