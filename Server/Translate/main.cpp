// The worker: reads or writes one foreign file for the program that started it, and reports to it
// over a pipe. It may crash or be killed at any time without affecting the program.
//
//     quillet-translate-FAMILY import FORMAT FILE MODEL [--no-annotations]
//         [--salvage | --facewise | --strict] [--pieces=FOLDER] [LIMITS]
//     quillet-translate-FAMILY renew FORMAT DATA MODEL [LIMITS]
//     quillet-translate-FAMILY export FORMAT DATA FILE [--combine=NAME] [--unit=NAME] [--document=NAME]
//         [--software=NAME] [LIMITS]
//
// The limits are --memory=BYTES of address space and --written=BYTES of the result.

#include "Server/Translate/BakedScales.h"
#include "Server/Translate/Beside.h"
#include "Server/Translate/Combine.h"
#include "Server/Translate/Family.h"
#include "Server/Translate/Import.h"
#include "Server/Translate/MappedFile.h"
#include "Server/Translate/MemoryEnd.h"
#include "Server/Translate/Renew.h"
#include "Server/Translate/Wall.h"

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <malloc.h>
#include <new>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Vs::Translate {

namespace {

/// What the program asks for, from the command line.
struct Task
{
    enum class Work { Import, Renew, Export };
    Work work = Work::Import;
    Exchange::Format format = Exchange::Format::Unknown;
    std::string source, target, pieces;
    ReadingOptions reading;
    Writing writing;
    uint64_t memory = RLIM_INFINITY, written = RLIM_INFINITY;
};

// The kernel allocates and frees arrays of some hundred kilobytes all the time. With its default thresholds
// the allocator would return each of them to the system, whose fresh pages take a tenth of the time of a
// small file. Kept, they are reused: the peak stays the same.
void keepFreedMemory(const std::string& source)
{
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
    mallopt(M_TRIM_THRESHOLD, 512 << 20);
    // Each meshing thread would have a heap of its own, beside the first one, which is full of what the
    // reader of a large file has freed: up to a sixth more memory. Two threads hardly wait for each other;
    // many would, and for a small file there is nothing to gain.
    constexpr uint64_t kLarge = 4 << 20;
    std::error_code error;
    if (const uint64_t size = std::filesystem::file_size(source, error);
        !error && size > kLarge && std::thread::hardware_concurrency() <= 2)
        mallopt(M_ARENA_MAX, 1);
}

bool parse(const std::vector<std::string>& arguments, Task& task)
{
    const auto number = [](const std::string& text) { return std::strtoull(text.c_str(), nullptr, 10); };
    std::vector<std::string> words;
    for (const std::string& argument : arguments) {
        if (argument == "--no-annotations")
            task.reading.annotations = false;
        else if (argument == "--salvage")
            task.reading.salvage = true;
        else if (argument == "--facewise")
            task.reading.salvage = task.reading.facewise = true;
        else if (argument == "--strict")
            task.reading.isStrict = true;
        else if (argument.starts_with("--memory="))
            task.memory = number(argument.substr(9));
        else if (argument.starts_with("--pieces="))
            task.pieces = argument.substr(9);
        else if (argument.starts_with("--written="))
            task.written = number(argument.substr(10));
        else if (argument.starts_with("--combine="))
            task.writing.combined = argument.substr(10);
        else if (argument.starts_with("--unit="))
            task.writing.unit = argument.substr(7);
        else if (argument.starts_with("--document="))
            task.writing.document = argument.substr(11);
        else if (argument.starts_with("--software="))
            task.writing.software = argument.substr(11);
        else
            words.push_back(argument);
    }
    if (words.size() != 4 || (words[0] != "import" && words[0] != "renew" && words[0] != "export"))
        return false;
    task.work = words[0] == "import"  ? Task::Work::Import
                : words[0] == "renew" ? Task::Work::Renew
                                      : Task::Work::Export;
    task.format = Exchange::formatOfKey(words[1]);
    task.source = words[2];
    task.target = words[3];
    return true;
}

bool mayReferToOthers(Exchange::Format format)
{
    return format != Exchange::Format::Iges && format != Exchange::Format::Brep &&
           format != Exchange::Format::Stl;
}

/// Throws Unreadable if the result can't be written where it should be.
void closeIn(const Task& task, Reporter& reporter)
{
    Wall wall{{task.source}, task.target};
    if (task.work == Task::Work::Import && mayReferToOthers(task.format))
        for (std::string& place : placesBeside(task.source))
            wall.readable.push_back(std::move(place));
    // The kernel's writers ask for the user's name, which thus doesn't get into the file.
    if (task.work == Task::Work::Export)
        wall.readable.insert(wall.readable.end(), {"/etc/passwd", "/etc/nsswitch.conf"});
    // Only existing files can be let through.
    const int target = open(task.target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (target < 0)
        throw Unreadable("can't be kept: " + task.target + ": " + std::strerror(errno));
    close(target);
    const WallParts parts = raiseWall(wall);
    if (!parts.files || !parts.calls)
        reporter.note(std::string("this system offers no ") +
                      (parts.files   ? "filter of system calls"
                       : parts.calls ? "Landlock"
                                     : "Landlock and no filter of system calls") +
                      ": files are read by workers that keep rights which they have no need of");
}

void exportFile(const Task& task, Reporter& reporter)
{
    reporter.stage("reading the model", 0.0, 0.1);
    const MappedFile file(task.source);
    Kernel::XdeModel model(file.bytes());
    bakeScales(model);
    if (!task.writing.combined.empty())
        combineParts(model, task.writing.combined);
    const std::string name = std::filesystem::path(task.target).filename().string();
    try {
        writeFile(task.format, model, task.writing, name, reporter);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const Standard_OutOfMemory&) {
        throw;
    } catch (...) {
        // The kernel's writers never report a full disk.
        if (const std::string cause = whyNoMore(name); !cause.empty())
            throw Unreadable("can't be written: " + cause);
        throw;
    }
}

constexpr const char* kNoMemory = "memory:";

/// What to tell of it, as a clause that follows the file's name.
std::string causeOf(const std::exception_ptr& fault, Task::Work work)
{
    try {
        std::rethrow_exception(fault);
    } catch (const std::bad_alloc&) {
        return kNoMemory;
    } catch (const Standard_OutOfMemory&) {
        return kNoMemory;
    } catch (const Standard_Failure& failure) {
        const char* text = failure.GetMessageString();
        return "makes the geometry kernel fail: " +
               std::string(text && *text ? text : failure.DynamicType()->Name());
    } catch (const Unreadable& error) {
        return error.what();
    } catch (const std::exception& error) {
        const char* const what = work == Task::Work::Import   ? "can't be read: "
                                 : work == Task::Work::Export ? "can't be written: "
                                                              : "";
        return what + std::string(error.what());
    }
}

int run(Task& task)
{
    Reporter reporter;
    try {
        if (task.work == Task::Work::Import && (!task.reading.salvage || task.reading.facewise))
            task.reading.helpers =
                helpersFor(task.format, task.source, {task.memory, task.pieces, task.reading.facewise});
        // The kernel takes what it is given as UTF-8, which the name of a folder need not be.
        if (task.work == Task::Work::Export)
            std::filesystem::current_path(std::filesystem::path(task.target).parent_path());
        closeIn(task, reporter);
        limitMemory(task.memory);
        static const std::string noMemory =
            Exchange::encode({Exchange::WorkerMessage::Kind::Error, 0, kNoMemory});
        endWhenMemoryIsShort(1, Exchange::kWorkerPipe, noMemory);
        if (task.work == Task::Work::Import)
            importFile(task.format, task.source, task.target, task.reading, reporter);
        else if (task.work == Task::Work::Renew)
            renewData(task.source, task.target, reporter);
        else
            exportFile(task, reporter);
        reporter.done();
        return 0;
    } catch (...) {
        reporter.error(isMemoryShort() ? kNoMemory : causeOf(std::current_exception(), task.work));
    }
    return 1;
}

} // namespace

} // namespace Vs::Translate

int main(int argc, char** argv)
{
    Vs::Translate::endWithParent(Vs::Exchange::kWorkerPipe);
    Vs::Translate::Task task;
    if (!Vs::Translate::parse({argv + 1, argv + argc}, task)) {
        std::fprintf(stderr, "A worker is started by quillet; it is of no use by itself.\n");
        return 2;
    }
    Vs::Translate::limitFiles(task.written);
    Vs::Translate::keepFreedMemory(task.source);
    // Destroying the kernel's structures takes long, and the system does it at once.
    std::_Exit(Vs::Translate::run(task));
}
