#pragma once

#include <boost/filesystem/path.hpp>

#include <map>
#include <string>
#include <vector>

namespace Quillet {

struct TestCase;

/// The results of each transcript's last run, in a JSON file that is read at the start of a run and updated
/// at its end. Transcripts that weren't run keep their entries.
class TestHistory
{
public:
    /// Empty if there is no such file, or for an empty name. Throws Vs::Exception, naming the file, if it
    /// can't be used.
    explicit TestHistory(const boost::filesystem::path& file);

    /// By the name of the transcript.
    [[nodiscard]] bool failed(const std::string& name) const;
    /// Its duration; for an unknown one the median of the known ones, or 1.
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
