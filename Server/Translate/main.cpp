// The worker: reads or writes one foreign file for the program that started it, and tells it over a pipe how
// that goes. It may crash or be killed at any time; nothing of the program goes with it.
//
//     quillet-translate-FAMILY import FORMAT FILE MODEL [--no-annotations] [--memory=BYTES]
//     quillet-translate-FAMILY export FORMAT DATA FILE [--combine=NAME] [--unit=NAME] [--memory=BYTES]

#include "Server/Translate/Combine.h"
#include "Server/Translate/Family.h"
#include "Server/Translate/Import.h"
#include "Server/Translate/MappedFile.h"

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <new>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace Vs::Translate {

namespace {

void limitMemory(rlim_t bytes)
{
    if (bytes == 0) {
        const rlim_t all = rlim_t(sysconf(_SC_PHYS_PAGES)) * rlim_t(sysconf(_SC_PAGE_SIZE));
        bytes = std::max<rlim_t>(all / 5 * 4, rlim_t(2) << 30);
    }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they need more room than there is
    const rlimit memory{bytes, bytes};
    setrlimit(RLIMIT_AS, &memory);
#endif
    // A dump of a crash would take longer than all the rest.
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

// The kernel takes and gives back arrays of some hundred kilobytes all the time. By its usual limits the
// allocator would hand each of them back to the system, whose fresh pages are a tenth of the time of a small
// file. Kept, they are used again: the peak stays the same.
void keepFreedMemory()
{
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TRIM_THRESHOLD, 512 << 20);
}

void exportFile(Exchange::Format format, const std::string& data, const Writing& writing,
                const std::string& path, Reporter& reporter)
{
    reporter.stage("reading the model", 0.0, 0.1);
    const MappedFile file(data);
    Kernel::XdeModel model(file.bytes());
    if (!writing.combined.empty())
        combineParts(model, writing.combined);
    writeFile(format, model, writing, path, reporter);
}

int run(const std::vector<std::string>& words, bool annotations, const Writing& writing)
{
    Reporter reporter;
    const Exchange::Format format = Exchange::formatOfKey(words[1]);
    try {
        if (words[0] == "import")
            importFile(format, words[2], words[3], annotations, reporter);
        else
            exportFile(format, words[2], writing, words[3], reporter);
        reporter.done();
        return 0;
    } catch (const std::bad_alloc&) {
        reporter.error("memory:");
    } catch (const Standard_OutOfMemory&) {
        reporter.error("memory:");
    } catch (const Standard_Failure& failure) {
        const char* text = failure.GetMessageString();
        reporter.error("makes the geometry kernel fail: " +
                       std::string(text && *text ? text : failure.DynamicType()->Name()));
    } catch (const std::exception& error) {
        reporter.error(error.what());
    }
    return 1;
}

} // namespace

} // namespace Vs::Translate

int main(int argc, char** argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::vector<std::string> words;
    bool annotations = true;
    rlim_t memory = 0;
    Vs::Translate::Writing writing;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--no-annotations")
            annotations = false;
        else if (argument.starts_with("--memory="))
            memory = std::strtoull(argument.c_str() + 9, nullptr, 10);
        else if (argument.starts_with("--combine="))
            writing.combined = argument.substr(10);
        else if (argument.starts_with("--unit="))
            writing.unit = argument.substr(7);
        else
            words.emplace_back(argument);
    }
    if (words.size() != 4 || (words[0] != "import" && words[0] != "export")) {
        std::fprintf(stderr, "A worker is started by quillet; it is of no use by itself.\n");
        return 2;
    }
    Vs::Translate::limitMemory(memory);
    Vs::Translate::keepFreedMemory();
    // Taking the kernel's structures apart takes long, and the system does it at once.
    std::_Exit(Vs::Translate::run(words, annotations, writing));
}
