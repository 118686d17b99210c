#pragma once

#include <map>
#include <string>
#include <vector>

namespace Quillet {

/// What a test run is asked for. All texts are UTF-8.
struct TestRun
{
    std::string
        directory; ///< Its transcripts and those of its folders are run, or the one; empty for no test run.
    std::vector<std::string>
        filters;          ///< Only names that one of these patterns (`*`, `?`, `[...]`) fits; empty for all.
    bool verbose = false; ///< Checks tell their values, which the report has then.
    bool failedOnly = false;        ///< Only those that failed when they were run last.
    bool window = false;            ///< Each in a window (TestDisplay).
    bool list = false;              ///< Tells the names, and runs nothing.
    int retries = 0;                ///< How often one that fails is run again.
    std::string resultsFile;        ///< How they ended last (TestHistory); empty for nowhere.
    std::string artifactsDirectory; ///< Where what failed ones wrote is kept; empty for nowhere.
    std::string tapFile;            ///< Where the report goes as TAP; empty for nowhere.
    std::string junitFile;          ///< Where the report goes as JUnit XML; empty for nowhere.
    std::string coverageFile; ///< Where what all of them have tried is written (Coverage); empty for nowhere.
    int jobs = 0;             ///< How many run side by side; 0 for as many as there are processors.
    int shard = 1;            ///< Of `shards` equal parts, this one is run. From 1.
    int shards = 1;
    double secondsLimit = 300;                     ///< For each transcript.
    std::map<std::string, std::string> parameters; ///< What ${NAME} stands for.
    std::string references = "compare";            ///< What checks do with theirs: compare, fill or update.
};

/// Runs each transcript and script of the folder in a process of its own, without a window unless told
/// otherwise and with settings that are as good as new. Files whose name begins with `_` are helpers of
/// others, and a text is one that looks like a transcript (looksLikeTextTranscript). What measures
/// performance runs after all others and alone, up to three times, of which the best counts. Tells how each
/// ended on standard output. Returns the exit code: 0 if all passed, 1 if not, 2 if there was nothing to run
/// or no report could be written.
int runTests(const TestRun& run);

} // namespace Quillet
