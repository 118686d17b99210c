// The program as the system starts it: small, so that it starts at once. If the command line speaks of a
// foreign file it puts the worker that reads it on standby, and only then loads the program itself, beside
// it.

#include "Server/DataModel/Exchange/Format.h"
#include "Server/DataModel/Exchange/WorkerProcess.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <thread>
#include <unistd.h>

using namespace Vs::Exchange;

namespace {

using Entry = int (*)(int, char**, const char*, const WorkerProcess*);

/// The folder that holds `bin` and `lib`, with a slash at its end.
std::string rootFolder()
{
    char self[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self);
    std::string path(self, length > 0 ? static_cast<size_t>(length) : 0);
    for (int level = 0; level < 2; ++level)
        path.resize(path.find_last_of('/') == std::string::npos ? 0 : path.find_last_of('/'));
    return path + '/';
}

Format mentionedFormat(int count, char** arguments)
{
    for (int i = 1; i < count; ++i)
        if (const Format format = formatMentioned(arguments[i]); format != Format::Unknown)
            return format;
    return Format::Unknown;
}

} // namespace

int main(int count, char** arguments)
{
    const std::string root = rootFolder();
    const char* program = workerOf(mentionedFormat(count, arguments));
    WorkerProcess standby;
    // On a single processor it would only take turns with the program's own start.
    if (*program && std::thread::hardware_concurrency() > 1)
        standby = spawnWorker(root + "bin/" + program, {});

    void* library = dlopen((root + "lib/libQuilletProgram.so").c_str(), RTLD_LAZY | RTLD_GLOBAL);
    const auto entry = library ? reinterpret_cast<Entry>(dlsym(library, "quilletMain")) : nullptr;
    if (!entry) {
        std::fprintf(stderr, "quillet: the program is incomplete: %s\n", dlerror());
        dismiss(standby);
        return 2;
    }
    return entry(count, arguments, program, &standby);
}
