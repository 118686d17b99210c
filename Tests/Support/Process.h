#pragma once

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace TestSupport {

/// A folder of its own under the system's temporary one, removed with everything in it at the end.
class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const boost::filesystem::path& path() const { return m_path; }
    /// Writes a file into the folder and returns its path.
    boost::filesystem::path write(const std::string& name, const std::string& content) const;

private:
    boost::filesystem::path m_path;
};

struct ProcessResult
{
    int exitCode = -1; ///< -1 when it was ended by a signal or by the time limit.
    int signal = 0;    ///< The signal that ended it, or 0.
    bool timedOut = false;
    std::string output; ///< Standard output.
    std::string errors; ///< Standard error.
};

struct ProcessOptions
{
    std::string input; ///< Given to standard input, which is then closed.
    std::vector<std::string>
        environment;          ///< `NAME=VALUE` on top of this process's own; `NAME=` removes the name.
    double secondsLimit = 60; ///< After this long the whole process group is killed.
    double interruptAfterSeconds = 0; ///< If above 0: sends SIGINT (Ctrl-C) after this long.
};

/// The path as one parameter of a text line.
std::string quoted(const boost::filesystem::path& path);

/// Runs a program to its end.
ProcessResult runProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessOptions& options = {});

/// Runs the built quillet with a profile folder of its own and without a display.
ProcessResult runQuillet(const std::vector<std::string>& arguments, const ProcessOptions& options = {});

/// The folder of the running tree: its `bin`, `lib`, `UI` and so on.
boost::filesystem::path runningTree();

} // namespace TestSupport
