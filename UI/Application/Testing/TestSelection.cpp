#include "UI/Application/Testing/TestSelection.h"

#include "Server/Base/TranscriptKind.h"
#include "UI/Application/Testing/TestHistory.h"
#include "UI/Application/Testing/TestRun.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <fnmatch.h>
#include <numeric>

namespace Quillet {
namespace {

namespace fs = boost::filesystem;

/// There may be other texts beside transcripts.
bool isTest(const fs::path& file)
{
    const std::string suffix = boost::algorithm::to_lower_copy(file.extension().string());
    return !file.filename().string().starts_with("_") &&
           (suffix == ".py" || (suffix == ".txt" && Vs::looksLikeTextTranscript(file.wstring())));
}

bool isWanted(const std::string& name, const std::vector<std::string>& patterns)
{
    return patterns.empty() || std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
               return fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
           });
}

/// Every `shards`-th one.
std::vector<TestFile> spread(const std::vector<TestFile>& all, size_t shard, size_t shards)
{
    std::vector<TestFile> own;
    for (size_t i = shard; i < all.size(); i += shards)
        own.push_back(all[i]);
    return own;
}

/// The longest first, each into the part with the least to do.
std::vector<TestFile> balanced(const std::vector<TestFile>& all, size_t shard, size_t shards,
                               const TestHistory& history)
{
    std::vector<size_t> order(all.size());
    std::iota(order.begin(), order.end(), size_t(0));
    std::stable_sort(order.begin(), order.end(), [&](size_t one, size_t other) {
        return history.seconds(all[one].name) > history.seconds(all[other].name);
    });
    std::vector<double> load(shards);
    std::vector<size_t> own;
    for (const size_t i : order) {
        const auto least = std::min_element(load.begin(), load.end());
        *least += history.seconds(all[i].name);
        if (least - load.begin() == static_cast<std::ptrdiff_t>(shard))
            own.push_back(i);
    }
    std::sort(own.begin(), own.end());
    std::vector<TestFile> files;
    for (const size_t i : own)
        files.push_back(all[i]);
    return files;
}

} // namespace

std::vector<TestFile> testsIn(const fs::path& folderOrFile)
{
    if (!fs::is_directory(folderOrFile))
        return {{folderOrFile, folderOrFile.filename().string()}};
    std::vector<TestFile> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folderOrFile))
        if (fs::is_regular_file(entry.status()) && isTest(entry.path()))
            found.push_back({entry.path(), fs::relative(entry.path(), folderOrFile).string()});
    std::sort(found.begin(), found.end(),
              [](const TestFile& one, const TestFile& other) { return one.path < other.path; });
    return found;
}

std::vector<TestFile> chosen(const std::vector<TestFile>& all, const TestRun& run, const TestHistory& history)
{
    std::vector<TestFile> wanted;
    for (const TestFile& file : all)
        if (isWanted(file.name, run.filters) && (!run.failedOnly || history.failed(file.name)))
            wanted.push_back(file);
    const auto shard = static_cast<size_t>(run.shard - 1), shards = static_cast<size_t>(run.shards);
    return history.hasTimes() ? balanced(wanted, shard, shards, history) : spread(wanted, shard, shards);
}

} // namespace Quillet
