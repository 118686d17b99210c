#include "UI/Application/CommandLine.h"

#include "Server/Base/QtText.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Program/ProgramLink.h"

#include <QCommandLineParser>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace Quillet {
namespace {

constexpr const char* kDescription =
    "A desktop 3D design application. FILEs are opened first, then --command, --replay, --script and "
    "--console\n"
    "run in the order in which they are given; the first line that fails ends the run.\n"
    "With --script, what follows -- are the arguments of the scripts (sys.argv).\n"
    "With --export, --info and --thumbnail the run is headless: they are short for lines (Design.Export, "
    "Design.Info,\nDesign.Picture).\n"
    "Exit code: 0 all well, 1 a line failed or a file could not be opened, 2 wrong usage or no start.";

struct OptionRow
{
    const char* name;
    const char* value; ///< The value's name in the help; null for a switch.
    const char* description;
};

constexpr OptionRow kOptions[] = {
    {"headless", nullptr, "Run without a window; no display is needed. Ends after the last line."},
    {"hand-over", nullptr, "Open the files in the window that was active last; start one if none is there."},
    {"export", "FILE", "Write the model that was opened last, in the format of the suffix, and exit."},
    {"info", nullptr, "Print the structure, the size, the volume and the area of each file, and exit."},
    {"json", nullptr, "With --info: one line of JSON for each file."},
    {"density", "G/CM3",
     "With --info: print the mass as well, at this density in grams per cubic centimetre."},
    {"thumbnail", nullptr,
     "Draw a file as a square picture (PNG), and exit. Takes three arguments: the file, the pixels on a "
     "side, the picture."},
    {"command", "LINE", "Run one text line."},
    {"replay", "FILE", "Run a transcript of text lines."},
    {"script", "FILE", "Run a Python script."},
    {"exit", nullptr, "End after the last line, also with a window."},
    {"console", nullptr, "Read text lines from standard input."},
    {"python", nullptr, "Read Python from standard input; on a terminal as Python's own console."},
    {"keep-going", nullptr, "Go on after a line that failed; the exit code still reports it."},
    {"echo", nullptr, "Print each line before its answer."},
    {"set", "NAME=VALUE", "What ${NAME} stands for in transcripts and lines; quillet.parameters of scripts."},
    {"references", "compare|fill|update",
     "What checks do with their references: compare (one that is missing fails; the default of --test), fill "
     "(makes those that are missing; the default otherwise), update (makes all of them again)."},
    {"compare-recordings", nullptr,
     "Print what one of two recordings, A and B, has and the other hasn't, by the meaning of their lines."},
    {"verbose", nullptr, "Have checks that pass print what they have found."},
    {"coverage", "FILE",
     "Write which lines and commands were run, and how often; with --test by all together."},
    {"profile-dir", "DIR", "Keep all settings, caches and recovery files in DIR."},
    {"no-autorun", nullptr, "Don't run the scripts that otherwise run at each start."},
    {"test", "DIR",
     "Run all transcripts and scripts in a folder, or the one file, each in a process of its own."},
    {"filter", "PATTERN",
     "With --test: run only those whose names below the folder fit; may be given often."},
    {"window", nullptr,
     "With --test: run each in a window, on the desktop or, without one, on a display that Xvfb makes."},
    {"list", nullptr, "With --test: print the names of those that would be run."},
    {"retry", "N", "With --test: run what failed up to N times more."},
    {"results", "FILE",
     "With --test: keep how each ended, for --failed and for parts that take equally long; with --shard it "
     "is only read."},
    {"failed", nullptr, "With --test and --results: run only what failed the last time."},
    {"artifacts", "DIR", "With --test: keep what those that failed wrote."},
    {"jobs", "N", "With --test: how many run side by side (default: as many as there are processors)."},
    {"timeout", "SECONDS", "With --test: how long each may take (default: 300)."},
    {"junit", "FILE", "With --test: write the results as JUnit XML."},
    {"tap", "FILE", "With --test: write the results as TAP."},
    {"shard", "I/N", "With --test: run only the I-th of N parts."},
    {"list-commands", nullptr, "Print every text command, one JSON object a line."},
    {"list-definitions", nullptr, "Print every command definition, one JSON object a line."},
    {"list-formats", nullptr, "Print every foreign format, one JSON object a line."},
    {"list-options", nullptr, "Print every option of this command line, one JSON object a line."},
    {"write-stubs", "DIR", "Write a type stub (.pyi) for each module that scripts import."},
    {"version", nullptr, "Print the version."},
    {"help", nullptr, "Print this help."},
};

/// Options for test runs only.
constexpr const char* kOfTestRunAlone[] = {"jobs", "timeout", "junit",   "tap",    "shard",     "filter",
                                           "list", "retry",   "results", "failed", "artifacts", "window"};
/// Options allowed together with --test, since they apply to such a run, too.
constexpr const char* kBesideTestRun[] = {"coverage", "verbose",    "test", "set",    "references",
                                          "headless", "no-autorun", "help", "version"};

void addOptions(QCommandLineParser& parser)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const OptionRow& row : kOptions)
        parser.addOption(QCommandLineOption(QLatin1String(row.name), QLatin1String(row.description),
                                            QLatin1String(row.value ? row.value : "")));
}

/// Options that are shorthand for a line.
constexpr const char* kShortForms[] = {"export", "info", "thumbnail"};

bool stepKind(const QString& option, Step::Kind& kind)
{
    if (option == QLatin1String("command"))
        kind = Step::Kind::Command;
    else if (option == QLatin1String("replay"))
        kind = Step::Kind::Replay;
    else if (option == QLatin1String("script"))
        kind = Step::Kind::Script;
    else if (option == QLatin1String("console"))
        kind = Step::Kind::Console;
    else if (option == QLatin1String("python"))
        kind = Step::Kind::Python;
    else
        return false;
    return true;
}

/// Arguments may be file names, and these needn't be valid UTF-8.
QString textOf(const std::string& argument)
{
    return QString::fromStdWString(Vs::Strings::fromBytes(argument));
}

std::string bytesOf(const QString& text)
{
    return Vs::Strings::toBytes(Vs::wideText(text));
}

/// Desktops also pass files as URLs. What is percent-encoded in them are bytes, as in any file name.
std::string pathOf(const std::string& given)
{
    for (const std::string_view beginning : {"file://localhost/", "file:///"})
        if (given.starts_with(beginning))
            return QByteArray::fromPercentEncoding(
                       QByteArray::fromStdString(given.substr(beginning.size() - 1)))
                .toStdString();
    return given;
}

/// A whole number from 1, or 0.
int positive(const QString& text)
{
    bool well = false;
    const int number = text.toInt(&well);
    return well && number > 0 ? number : 0;
}

/// Returns what is wrong in one sentence, or nothing.
std::string readReferences(const QCommandLineParser& parser, CommandLine& line)
{
    if (!parser.isSet(QStringLiteral("references")))
        return {};
    const std::string mode = parser.value(QStringLiteral("references")).toStdString();
    for (const char* known : {"compare", "fill", "update"})
        if (mode == known) {
            line.references = line.test.references = mode;
            return {};
        }
    return "--references needs compare, fill or update, not \"" + mode + "\".";
}

/// A line with a file name as its last parameter.
std::string lineOn(const std::string& line, const QString& file)
{
    return line + ' ' + Vs::Strings::toBytes(Vs::Strings::quote(Vs::wideText(file)));
}

/// Shorthands for lines. Returns what is wrong in one sentence, or nothing.
std::string readShortForms(const QCommandLineParser& parser, CommandLine& line)
{
    const bool info = parser.isSet(QStringLiteral("info"));
    const QString density = parser.value(QStringLiteral("density"));
    for (const char* option : {"json", "density"})
        if (parser.isSet(QLatin1String(option)) && !info)
            return std::string("--") + option + " needs --info.";
    if (parser.isSet(QStringLiteral("density")) && !(density.toDouble() > 0))
        return "--density needs a number above 0, not \"" + density.toStdString() + "\".";
    if (info) {
        if (line.files.empty())
            return "--info needs a file.";
        line.infoLine = "Design.Info" + (density.isEmpty() ? std::string() : ' ' + density.toStdString()) +
                        (parser.isSet(QStringLiteral("json")) ? " /Json" : "");
    }
    if (parser.isSet(QStringLiteral("thumbnail"))) {
        if (line.files.size() != 3 || positive(QString::fromStdString(line.files[1])) == 0)
            return "--thumbnail needs three arguments: the file, the pixels on a side, the picture.";
        line.steps.push_back({Step::Kind::Command,
                              lineOn("Design.Picture " + line.files[1], textOf(line.files[2])),
                              "--thumbnail"});
        line.files.resize(1);
    }
    return {};
}

/// What a test run decides itself, or has no use for. Returns what is wrong in one sentence, or nothing.
std::string strangerToTestRun(const QCommandLineParser& parser)
{
    for (const OptionRow& row : kOptions) {
        const auto isThis = [&](std::string_view name) { return name == row.name; };
        const bool belongs = std::any_of(std::begin(kOfTestRunAlone), std::end(kOfTestRunAlone), isThis) ||
                             std::any_of(std::begin(kBesideTestRun), std::end(kBesideTestRun), isThis);
        if (!belongs && parser.isSet(QLatin1String(row.name)))
            return std::string("--") + row.name + " doesn't go with --test.";
    }
    if (!parser.positionalArguments().isEmpty())
        return "--test runs the transcripts of its folder, and opens no files: \"" +
               parser.positionalArguments().front().toStdString() + "\".";
    return {};
}

/// Returns what is wrong in one sentence, or nothing.
std::string readTestRun(const QCommandLineParser& parser, TestRun& run)
{
    const auto given = [&](const char* option) { return parser.isSet(QLatin1String(option)); };
    const auto value = [&](const char* option) { return parser.value(QLatin1String(option)); };
    run.directory = bytesOf(value("test"));
    if (given("test") && run.directory.empty())
        return "--test needs the name of a folder.";
    for (const char* option : kOfTestRunAlone)
        if (given(option) && run.directory.empty())
            return std::string("--") + option + " needs --test.";
    run.junitFile = bytesOf(value("junit"));
    run.tapFile = bytesOf(value("tap"));
    run.resultsFile = bytesOf(value("results"));
    run.artifactsDirectory = bytesOf(value("artifacts"));
    run.list = given("list");
    run.window = given("window");
    run.failedOnly = given("failed");
    for (const QString& pattern : parser.values(QStringLiteral("filter")))
        run.filters.push_back(bytesOf(pattern));
    if (run.failedOnly && run.resultsFile.empty())
        return "--failed needs --results FILE, which knows what failed.";
    for (const auto& [option, number] : {std::pair{"retry", &run.retries}, std::pair{"jobs", &run.jobs}}) {
        if (!given(option))
            continue;
        *number = positive(value(option));
        if (*number == 0)
            return std::string("--") + option + " needs a whole number from 1, not \"" +
                   value(option).toStdString() + "\".";
    }
    if (given("timeout"))
        run.secondsLimit = value("timeout").toDouble();
    if (given("timeout") && !(run.secondsLimit > 0))
        return "--timeout needs a number of seconds, not \"" + value("timeout").toStdString() + "\".";
    if (given("test"))
        if (std::string stranger = strangerToTestRun(parser); !stranger.empty())
            return stranger;
    if (given("shard")) {
        const QString shard = value("shard");
        run.shard = positive(shard.section(u'/', 0, 0));
        run.shards = positive(shard.section(u'/', 1));
        if (run.shard == 0 || run.shard > run.shards)
            return "--shard needs I/N with I from 1 to N, not \"" + shard.toStdString() + "\".";
    }
    return {};
}

std::vector<Step> stepsIn(const QCommandLineParser& parser)
{
    std::vector<Step> steps;
    // The parser keeps the values of each option separately, and the names of all options in order.
    std::map<QString, qsizetype> seen;
    for (const QString& option : parser.optionNames()) {
        Step::Kind kind;
        if (option == QLatin1String("export")) {
            const QString file = parser.values(option).value(seen[option]++);
            steps.push_back({Step::Kind::Command, lineOn("Design.Export", file), "--export"});
            continue;
        }
        if (!stepKind(option, kind))
            continue;
        const QString value = kind == Step::Kind::Console || kind == Step::Kind::Python
                                  ? QString()
                                  : parser.values(option).value(seen[option]++);
        steps.push_back({kind, bytesOf(value)});
    }
    return steps;
}

/// Returns what is wrong in one sentence, or nothing.
std::string readParameters(const QCommandLineParser& parser, std::map<std::string, std::string>& parameters)
{
    for (const QString& setting : parser.values(QStringLiteral("set"))) {
        const qsizetype equals = setting.indexOf(u'=');
        if (equals <= 0)
            return "--set needs NAME=VALUE, not \"" + bytesOf(setting) + "\".";
        parameters[bytesOf(setting.left(equals))] = bytesOf(setting.mid(equals + 1));
    }
    return {};
}

/// The options that are only there or not.
void readSwitches(const QCommandLineParser& parser, CommandLine& result)
{
    result.autorun = !parser.isSet(QStringLiteral("no-autorun"));
    result.exit = parser.isSet(QStringLiteral("exit"));
    result.keepGoing = parser.isSet(QStringLiteral("keep-going"));
    result.echo = parser.isSet(QStringLiteral("echo"));
    result.listCommands = parser.isSet(QStringLiteral("list-commands"));
    result.listDefinitions = parser.isSet(QStringLiteral("list-definitions"));
    result.listFormats = parser.isSet(QStringLiteral("list-formats"));
    result.listOptions = parser.isSet(QStringLiteral("list-options"));
    result.version = parser.isSet(QStringLiteral("version"));
    result.help = parser.isSet(QStringLiteral("help"));
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments)
{
    CommandLine result;
    QCommandLineParser parser;
    addOptions(parser);
    QStringList list{QStringLiteral("quillet")};
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    for (auto argument = arguments.begin(); argument != end; ++argument)
        list << textOf(*argument);
    if (!parser.parse(list)) {
        result.error = parser.errorText().toStdString();
        return result;
    }

    result.steps = stepsIn(parser);
    result.error = readParameters(parser, result.parameters);
    if (!result.error.empty())
        return result;
    for (const QString& file : parser.positionalArguments()) {
        const std::string given = bytesOf(file);
        if (Vu::ProgramLink::isLink(given))
            result.links.push_back(given);
        else
            result.files.push_back(pathOf(given));
    }
    if (end != arguments.end()) {
        auto& target = parser.isSet(QStringLiteral("script")) ? result.scriptArguments : result.files;
        target.insert(target.end(), end + 1, arguments.end());
    }
    result.profileDirectory = bytesOf(parser.value(QStringLiteral("profile-dir")));
    if (parser.isSet(QStringLiteral("profile-dir")) && result.profileDirectory.empty())
        result.error = "--profile-dir needs the name of a directory.";
    if (const std::string wrong = readTestRun(parser, result.test); !wrong.empty())
        result.error = wrong;
    if (const std::string wrong = readReferences(parser, result); !wrong.empty())
        result.error = wrong;
    if (!result.test.directory.empty() && end != arguments.end() && end + 1 != arguments.end())
        result.error = "--test runs the transcripts of its folder, and opens no files.";
    result.test.parameters = result.parameters;
    result.compareRecordings = parser.isSet(QStringLiteral("compare-recordings"));
    if (result.compareRecordings && (result.files.size() != 2 || !result.steps.empty()))
        result.error = "--compare-recordings needs two files, and nothing to run.";
    result.verbose = result.test.verbose = parser.isSet(QStringLiteral("verbose"));
    result.coverageFile = result.test.coverageFile = bytesOf(parser.value(QStringLiteral("coverage")));
    result.stubsDirectory = bytesOf(parser.value(QStringLiteral("write-stubs")));
    if (const std::string wrong = readShortForms(parser, result); !wrong.empty())
        result.error = wrong;
    result.headless = parser.isSet(QStringLiteral("headless")) ||
                      std::any_of(std::begin(kShortForms), std::end(kShortForms),
                                  [&](const char* option) { return parser.isSet(QLatin1String(option)); });
    result.handOver = parser.isSet(QStringLiteral("hand-over"));
    if (result.handOver && (result.headless || !result.steps.empty()))
        result.error = "--hand-over opens files in a window, so it can't be combined with --headless or "
                       "anything to run.";
    if (result.headless && !result.links.empty())
        result.error = "A link is followed in a window, so it can't be combined with --headless.";
    readSwitches(parser, result);
    return result;
}

std::string helpText()
{
    QCommandLineParser parser;
    addOptions(parser);
    parser.setApplicationDescription(QLatin1String(kDescription));
    parser.addPositionalArgument(
        QStringLiteral("FILE"),
        QStringLiteral("What to open: a document, or a STEP, IGES, BREP, STL, OBJ, glTF or VRML file."),
        QStringLiteral("[FILE...]"));
    QString text = parser.helpText();
    text.replace(QLatin1String("<executable_name>"), QLatin1String("quillet"));
    return text.toStdString();
}

std::vector<OptionText> optionTexts()
{
    std::vector<OptionText> all;
    for (const OptionRow& row : kOptions)
        all.push_back({row.name, row.value ? row.value : "", row.description});
    return all;
}

} // namespace Quillet
