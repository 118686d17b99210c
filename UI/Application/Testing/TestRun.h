#pragma once

#include <map>
#include <string>

namespace Quillet {

/// What a test run is asked for. All texts are UTF-8.
struct TestRun
{
    std::string directory; ///< Its transcripts and those of its folders are run; empty for no test run.
    std::string junitFile; ///< Where the report goes as JUnit XML; empty for nowhere.
    int jobs = 0;          ///< How many run side by side; 0 for as many as there are processors.
    int shard = 1;         ///< Of `shards` equal parts, this one is run. From 1.
    int shards = 1;
    double secondsLimit = 300;                     ///< For each transcript.
    std::map<std::string, std::string> parameters; ///< What ${NAME} stands for.
    std::string references = "compare";            ///< What checks do with theirs: compare, fill or update.
};

/// Runs each transcript and script of the folder in a process of its own, without a window and with settings
/// that are as good as new. Files whose name begins with `_` are helpers of others, and a text is one that
/// looks like a transcript (looksLikeTextTranscript). What measures performance runs after all others and
/// alone, up to three times, of which the best counts. Tells how each ended on
/// standard output. Returns the exit code: 0 if all passed, 1 if not, 2 if there was nothing to run or no
/// report could be written.
int runTests(const TestRun& run);

} // namespace Quillet
