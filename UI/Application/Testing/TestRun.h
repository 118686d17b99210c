#pragma once

#include <map>
#include <string>
#include <vector>

namespace Quillet {

/// What a test run is asked for. All texts are UTF-8.
struct TestRun
{
    std::string directory; ///< The transcripts of this folder and its subfolders are run, or the one file;
                           ///< empty for no test run.
    std::vector<std::string>
        filters;          ///< Only names that match one of these patterns (`*`, `?`, `[...]`); empty for all.
    bool verbose = false; ///< Checks print their values, which the report then includes.
    bool failedOnly = false;        ///< Only those that failed in their last run.
    bool window = false;            ///< Each in a window (TestDisplay).
    bool list = false;              ///< Lists the names without running anything.
    int retries = 0;                ///< How often a failed one is run again.
    std::string resultsFile;        ///< The results of last time (TestHistory); empty for none.
    std::string artifactsDirectory; ///< The folder for the output of failed ones; empty for none.
    std::string tapFile;            ///< The file for the report as TAP; empty for none.
    std::string junitFile;          ///< The file for the report as JUnit XML; empty for none.
    std::string coverageFile;       ///< The file for the combined coverage (Coverage); empty for none.
    int jobs = 0;                   ///< How many run in parallel; 0 for as many as there are processors.
    int shard = 1;                  ///< Which of `shards` equal parts is run. From 1.
    int shards = 1;
    double secondsLimit = 300;                     ///< For each transcript.
    std::map<std::string, std::string> parameters; ///< The values of ${NAME}.
    std::string references = "compare"; ///< What checks do with their references: compare, fill or update.
};

/// Runs each transcript and script of the folder in a process of its own, without a window unless told
/// otherwise and with fresh settings. Files whose name begins with `_` are helpers of others, and a text
/// counts if it looks like a transcript (looksLikeTextTranscript). Performance transcripts run after all
/// others and alone, up to three times, of which the best counts. Prints the results on standard output.
/// Returns the exit code: 0 if all passed, 1 if not, 2 if there was nothing to run or a report couldn't be
/// written.
int runTests(const TestRun& run);

} // namespace Quillet
