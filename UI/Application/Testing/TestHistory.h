#pragma once

#include <boost/filesystem/path.hpp>

#include <map>
#include <string>
#include <vector>

namespace Quillet {

struct TestCase;

/// How transcripts ended when they were run last, in a JSON file that a run reads at its start and brings up
/// to date at its end. Transcripts that weren't run keep what the file says of them.
class TestHistory
{
public:
    /// Empty if there is no such file, or for an empty name. Throws Vs::Exception that names a file which
    /// can't be used.
    explicit TestHistory(const boost::filesystem::path& file);

    /// By the name of the transcript.
    [[nodiscard]] bool failed(const std::string& name) const;
    /// What it took; for one that isn't known the middle of all that are, or 1.
    [[nodiscard]] double seconds(const std::string& name) const;
    [[nodiscard]] bool hasTimes() const { return !m_entries.empty(); }

    /// Throws Vs::Exception that names the file and the cause.
    void write(const std::vector<TestCase>& cases);

private:
    struct Entry
    {
        bool failed = false;
        double seconds = 0;
    };

    boost::filesystem::path m_file;
    std::map<std::string, Entry> m_entries;
    double m_usual = 1;
};

} // namespace Quillet
