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

/// A look at those entries of a package that opening it didn't read, for damage. Main thread, but for the
/// work itself, which goes on behind it: one file at a time for the whole program.
class FileCheck
{
public:
    struct Part
    {
        std::string entry;
        std::wstring what;                      ///< As a message names it.
        std::shared_ptr<const ModelFile> model; ///< Whose exact data it has; null for other entries.
    };
    /// What is damaged, by Part::what.
    using Tell = std::function<void(const std::vector<std::wstring>& damaged)>;

    /// Begins. `tell` is called from FileChecks::results, if there is anything to tell of and this is still
    /// there.
    FileCheck(std::shared_ptr<const FileMapping> file, std::vector<Part> parts, Tell tell);
    /// Gives up what isn't done yet.
    ~FileCheck();
    FileCheck(const FileCheck&) = delete;
    FileCheck& operator=(const FileCheck&) = delete;

    /// Returns when nothing is left to be looked at.
    static void waitForAll();

    struct Work;

private:
    std::shared_ptr<Work> m_work;
};

} // namespace Vs::Native
