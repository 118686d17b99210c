#pragma once

#include "UI/Application/Testing/TestRun.h"

#include <map>
#include <string>
#include <vector>

namespace Quillet {

/// One piece of work that the command line asks for, in the order given.
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
    std::string place = {}; ///< What messages begin with; empty for the step's own.
};

/// What the user asked for. Texts are the bytes that were given: UTF-8, unless a file has another name.
struct CommandLine
{
    std::vector<std::string> files; ///< Opened before the steps.
    std::vector<std::string> links; ///< Followed when the window is there (Vu::ProgramLink).
    std::string infoLine;           ///< Run after each file was opened; empty for none.
    std::vector<Step> steps;
    std::vector<std::string> scriptArguments;      ///< What follows `--`, if a script is run.
    std::map<std::string, std::string> parameters; ///< What ${NAME} stands for in transcripts.
    std::string profileDirectory;                  ///< Empty: the user's own directories.
    std::string stubsDirectory;                    ///< Where type stubs are written to; empty for nowhere.
    std::string coverageFile; ///< Where it is written what the run has tried; empty for nowhere.
    std::string references;   ///< compare, fill or update; empty for the default.
    TestRun test;             ///< With a folder, the run is this and nothing else.
    bool headless = false;
    bool handOver = false; ///< The files go to the window that runs already, if there is one.
    bool autorun = true;
    bool exit = false; ///< A window closes after the last step.
    bool keepGoing = false;
    bool echo = false;
    bool compareRecordings = false; ///< The two files are compared, and nothing else is done.
    bool verbose = false;           ///< Checks tell their values.
    bool listCommands = false;
    bool listDefinitions = false;
    bool listFormats = false;
    bool listOptions = false;
    bool version = false;
    bool help = false;

    /// Wrong usage in one sentence; empty if all is well. With an error, nothing else here counts.
    std::string error;
};

/// Exit codes of the program.
constexpr int kExitOk = 0;
constexpr int kExitLineFailed = 1; ///< Of a script, the number that it gave to sys.exit.
constexpr int kExitUsage = 2;      ///< Also when the program refuses to start.

/// Reads the arguments, the program's name not among them. Needs no application object.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// The text of --help.
std::string helpText();

/// What can be written on the command line, for those who make pages and completions of it.
struct OptionText
{
    std::string name;  ///< Without its dashes.
    std::string value; ///< What follows it, as FILE or "compare|fill|update"; empty for a switch.
    std::string description;
};
std::vector<OptionText> optionTexts();

} // namespace Quillet
