#pragma once

#include "UI/Application/Testing/TestRun.h"

#include <map>
#include <string>
#include <vector>

namespace Quillet {

/// One step that the command line asks for, in the order given.
struct Step
{
    enum class Kind {
        Command, ///< `text` is a text line.
        Replay,  ///< `text` is the path of a transcript.
        Script,  ///< `text` is the path of a Python script.
        Console, ///< Lines from standard input.
        Python,  ///< Python from standard input.
    };
    Kind kind;
    std::string text;
    std::string place = {}; ///< The prefix of messages; empty for the step's own.
};

/// What the user asked for. Texts are the bytes as given: UTF-8, except for file names in another encoding.
struct CommandLine
{
    std::vector<std::string> files; ///< Opened before the steps.
    std::vector<std::string> links; ///< Followed once the window exists (Vu::ProgramLink).
    std::string infoLine;           ///< Run after each file has been opened; empty for none.
    std::vector<Step> steps;
    std::vector<std::string> scriptArguments;      ///< What follows `--`, if a script is run.
    std::map<std::string, std::string> parameters; ///< The values of ${NAME} in transcripts.
    std::string profileDirectory;                  ///< Empty: the user's own directories.
    std::string stubsDirectory;                    ///< The folder for type stubs; empty for none.
    std::string coverageFile;                      ///< The file for the run's coverage; empty for none.
    std::string references;                        ///< compare, fill or update; empty for the default.
    TestRun test;                                  ///< With a folder, the run is a test run and nothing else.
    bool headless = false;
    bool handOver = false; ///< The files go to a window that is already running, if there is one.
    bool autorun = true;
    bool exit = false; ///< A window closes after the last step.
    bool keepGoing = false;
    bool echo = false;
    bool compareRecordings = false; ///< The two files are compared, and nothing else is done.
    bool verbose = false;           ///< Checks print their values.
    bool listCommands = false;
    bool listDefinitions = false;
    bool listFormats = false;
    bool listOptions = false;
    bool version = false;
    bool help = false;

    /// The usage error in one sentence; empty if there is none. With an error, nothing else here is valid.
    std::string error;
};

/// Exit codes of the program.
constexpr int kExitOk = 0;
constexpr int kExitLineFailed = 1; ///< For a script, the number it passed to sys.exit.
constexpr int kExitUsage = 2;      ///< Also if the program refuses to start.

/// Parses the arguments, without the program's name. Needs no application object.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// The text of --help.
std::string helpText();

/// The options of the command line, for generating manual pages and completions.
struct OptionText
{
    std::string name;  ///< Without its dashes.
    std::string value; ///< What follows it, as FILE or "compare|fill|update"; empty for a switch.
    std::string description;
};
std::vector<OptionText> optionTexts();

} // namespace Quillet
