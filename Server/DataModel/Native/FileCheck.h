#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {
class FileMapping;
class ModelFile;
} // namespace Vs

namespace Vs::Native {

/// Checks those entries of a package for damage that opening it didn't read. Main thread, except for the work
/// itself, which runs in the background: one file at a time for the whole program.
class FileCheck
{
public:
    struct Part
    {
        std::string entry;
        std::wstring what;                      ///< The name used in messages.
        std::shared_ptr<const ModelFile> model; ///< Whose exact data it is; null for other entries.
    };
    /// What is damaged, by Part::what.
    using Tell = std::function<void(const std::vector<std::wstring>& damaged)>;

    /// Starts. `tell` is called from FileChecks::results, if there is anything to report and this still
    /// exists.
    FileCheck(std::shared_ptr<const FileMapping> file, std::vector<Part> parts, Tell tell);
    /// Cancels what isn't done yet.
    ~FileCheck();
    FileCheck(const FileCheck&) = delete;
    FileCheck& operator=(const FileCheck&) = delete;

    /// Returns when nothing is left to be checked.
    static void waitForAll();

    struct Work;

private:
    std::shared_ptr<Work> m_work;
};

} // namespace Vs::Native
