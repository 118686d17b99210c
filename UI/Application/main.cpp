#include "Server/Base/SoftwareVersion.h"
#include "UI/Application/Program.h"

#include <cstdio>

using namespace Quillet;

int main(int count, char** arguments)
{
    const CommandLine line = parseCommandLine({arguments + 1, arguments + count});
    if (!line.error.empty()) {
        std::fprintf(stderr, "quillet: %s\nTry: quillet --help\n", line.error.c_str());
        return kExitUsage;
    }
    if (line.help) {
        std::fputs(helpText().c_str(), stdout);
        return kExitOk;
    }
    if (line.version) {
        std::printf("Quillet %s\n", Vs::SoftwareVersion::currentSoftwareVersion().c_str());
        return kExitOk;
    }
    return runProgram(line, count, arguments);
}
