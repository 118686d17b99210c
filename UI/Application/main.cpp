#include "UI/Application/CommandLine.h"

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
        std::puts("Quillet " QUILLET_VERSION);
        return kExitOk;
    }
    return kExitOk;
}
