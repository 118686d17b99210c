#include "UI/Application/RunCommandLine.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "UI/Application/CrashStack.h"
#include "UI/Application/Lists.h"
#include "UI/Application/Program.h"
#include "UI/Application/Revision.h"
#include "UI/Application/Testing/Recordings.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>

namespace Quillet {
namespace {

int run(int count, char** arguments)
{
    const CommandLine line = parseCommandLine({arguments + 1, arguments + count});
    if (!line.error.empty()) {
        std::fprintf(stderr, "quillet: %s\nTry: quillet --help\n",
                     Vs::Strings::forTerminal(line.error).c_str());
        return kExitUsage;
    }
    if (line.help) {
        std::fputs(helpText().c_str(), stdout);
        return kExitOk;
    }
    if (line.listOptions) {
        listOptions();
        return kExitOk;
    }
    if (line.version) {
        std::printf("Quillet %s\n", Vs::SoftwareVersion::describeCurrent().c_str());
        return kExitOk;
    }
    if (line.compareRecordings)
        return compareRecordings(line.files[0], line.files[1]);
    if (!line.test.directory.empty())
        return runTests(line.test);
    tellStackOfCrash();
    return runProgram(line, count, arguments);
}

} // namespace

int runCommandLine(int count, char** arguments)
{
    Vs::SoftwareVersion::currentRevision(kRevision);
    int code = kExitLineFailed;
    try {
        code = run(count, arguments);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "quillet: %s\n", Vs::Strings::forTerminal(fault.what()).c_str());
    }
    // Answers that couldn't be delivered, on a full disk for instance, are a failure.
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "quillet: Answers could not be written to standard output%s%s.\n",
                     errno ? ": " : "", errno ? std::strerror(errno) : "");
        if (code == kExitOk)
            code = kExitLineFailed;
    }
    return code;
}

int runCommandLine(const std::string& name, const std::vector<std::string>& arguments)
{
    std::vector<std::string> words{name};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return runCommandLine(static_cast<int>(words.size()), pointers.data());
}

} // namespace Quillet
