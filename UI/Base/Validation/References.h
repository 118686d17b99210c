#pragma once

#include <boost/filesystem/path.hpp>

#include <map>
#include <optional>
#include <string>
#include <variant>

namespace Vu {

/// A number in the program's own units, or a text.
using ReferenceValue = std::variant<double, std::wstring>;
/// The values kept under one name.
using ReferenceValues = std::map<std::wstring, ReferenceValue>;

/// The values that a transcript found when it was correct, to compare with in a replay. They are JSON, in a
/// file of the transcript's name beside it: `bracket.checks.json` belongs to `bracket.txt` and `bracket.py`.
/// Lines that are typed have theirs beside the transcript that is recorded meanwhile, or else in the current
/// folder, named after the active document. Main thread only.
class References
{
public:
    /// What happens to compared values.
    enum class Mode {
        Fill,    ///< Where there is no reference yet, the value becomes it. The default.
        Update,  ///< The value becomes the reference.
        Compare, ///< Where there is no reference, the comparison fails.
    };
    static Mode mode();
    static void mode(Mode mode);

    /// Reads the file. `kind` is the middle of its name, and `testName` the first part where it isn't that of
    /// the transcript or the document. Throws Vs::Exception that names the file, and where its content is
    /// wrong.
    explicit References(const std::wstring& kind, const std::wstring& testName = {});

    const boost::filesystem::path& file() const { return m_file; }

    /// Nothing if there is no such reference, or the mode says to make a new one.
    [[nodiscard]] std::optional<ReferenceValues> find(const std::wstring& name) const;
    /// Keeps the values, and writes the file as a whole at once. Throws Vs::Exception that names file and
    /// cause, also where the mode is Compare.
    void store(const std::wstring& name, const ReferenceValues& values);

    /// Where references of that kind are now. There need not be such a file.
    [[nodiscard]] static boost::filesystem::path currentFile(const std::wstring& kind,
                                                             const std::wstring& testName = {});

private:
    boost::filesystem::path m_file;
    std::map<std::wstring, ReferenceValues> m_references;
};

} // namespace Vu
