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

/// The values that a transcript found when it was correct, for comparison in a replay. They are JSON, in a
/// file beside the transcript and with its name: `bracket.checks.json` belongs to `bracket.txt` and
/// `bracket.py`. Typed lines have theirs beside the transcript being recorded, or else in the current folder,
/// named after the active document. Main thread only.
class References
{
public:
    /// What happens to compared values.
    enum class Mode {
        Fill,    ///< A value without a reference becomes it. The default.
        Update,  ///< The value becomes the reference.
        Compare, ///< Without a reference, the comparison fails.
    };
    static Mode mode();
    static void mode(Mode mode);

    /// Reads the file. `kind` is the middle part of its name, and `testName` the first part if it isn't that
    /// of the transcript or the document. Throws Vs::Exception that names the file, and where its content is
    /// invalid.
    explicit References(const std::wstring& kind, const std::wstring& testName = {});

    const boost::filesystem::path& file() const { return m_file; }

    /// Nothing if there is no such reference, or the mode says to create a new one.
    [[nodiscard]] std::optional<ReferenceValues> find(const std::wstring& name) const;
    /// Stores the values, and writes the whole file at once. Throws Vs::Exception that names file and cause,
    /// also if the mode is Compare.
    void store(const std::wstring& name, const ReferenceValues& values);

    /// The present file of references of that kind. It need not exist.
    [[nodiscard]] static boost::filesystem::path currentFile(const std::wstring& kind,
                                                             const std::wstring& testName = {});

private:
    boost::filesystem::path m_file;
    std::map<std::wstring, ReferenceValues> m_references;
};

} // namespace Vu
