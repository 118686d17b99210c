// A run of a program that keeps recovery files: what a test tells it on its command line, until it ends or is
// killed. One process for each run, since what counts is what a process leaves behind.
//
//     recovery_probe PROFILE STEP...

#include "Server/Base/OptionGroup.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/AutoSaveDisabler.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/ModelDigest.h"
#include "Server/DataModel/Native/FileCalls.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "Server/DataModel/Recovery/AutoSaveEvents.h"
#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"
#include "Server/DataModel/Transaction.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Vs;

namespace {

/// At one call, of this process or of a child that it forked, something happens.
class Calls : public Native::FileCalls
{
public:
    enum class Kind { None, Kill, Error, Shorter, Garble };
    Kind kind = Kind::None;
    int at = 0, code = 0, count = 0;

    int open(const char* path, int flags, mode_t mode) override
    {
        return fails() ? -1 : FileCalls::open(path, flags, mode);
    }
    ssize_t write(int descriptor, const void* data, size_t size) override
    {
        if (fails())
            return -1;
        if (kind == Kind::Garble && size > 0) {
            // A disk that keeps something else than it was told.
            std::string other(static_cast<const char*>(data), size);
            other[size / 2] = static_cast<char>(other[size / 2] ^ 1);
            return FileCalls::write(descriptor, other.data(), size);
        }
        return FileCalls::write(descriptor, data, shortened(size));
    }
    ssize_t writeAt(int descriptor, const void* data, size_t size, off_t place) override
    {
        return fails() ? -1 : FileCalls::writeAt(descriptor, data, shortened(size), place);
    }
    ssize_t copy(int from, off_t* place, int to, size_t size) override
    {
        return fails() ? -1 : FileCalls::copy(from, place, to, shortened(size));
    }
    int lock(int descriptor) override { return fails() ? -1 : FileCalls::lock(descriptor); }
    int rights(int descriptor, mode_t mode) override
    {
        return fails() ? -1 : FileCalls::rights(descriptor, mode);
    }
    int flush(int descriptor) override { return fails() ? -1 : FileCalls::flush(descriptor); }
    int close(int descriptor) override
    {
        const int result = FileCalls::close(descriptor);
        return fails() ? -1 : result;
    }
    int rename(const char* from, const char* to) override
    {
        return fails() ? -1 : FileCalls::rename(from, to);
    }
    int remove(const char* path) override { return fails() ? -1 : FileCalls::remove(path); }

private:
    bool fails()
    {
        const int number = count++;
        if (kind == Kind::Kill && number == at)
            kill(getpid(), SIGKILL);
        errno = kind == Kind::Shorter ? EINTR : code;
        return (kind == Kind::Error && number == at) || (kind == Kind::Shorter && number % 2 == 1);
    }
    size_t shortened(size_t size) const { return kind == Kind::Shorter ? (size + 1) / 2 : size; }
};

class Listener : public AutoSaveEventSite
{
public:
    Listener() { AutoSaveEventSource::get()->subscribe(this); }
    ~Listener() override { AutoSaveEventSource::get()->unsubscribe(this); }
    void autoSavedRecoveryFileDeleted(AutoSaveEvent*) override { tell("gone", {}); }
    void autoSavedRecoveryFileKept(AutoSaveEvent* event) override { tell("kept", event->message()); }
    void autoSavedRecoveryFileDamaged(AutoSaveEvent* event) override { tell("damaged", event->message()); }
    void autoSavedDocumentLeft(AutoSaveEvent* event) override { tell("left", event->message()); }
    void autoSaveFailed(AutoSaveEvent* event) override { tell("failed", event->message()); }
    void autoSaveWorksAgain(AutoSaveEvent*) override { tell("works again", {}); }

private:
    static void tell(const char* what, const std::wstring& message)
    {
        std::cout << "event: " << what;
        if (!message.empty())
            std::cout << ": " << Strings::narrow(message);
        std::cout << std::endl;
    }
};

DocumentType& documentType()
{
    static DocumentType type("TestDocType", L"Test Design", L".tdsn");
    return type;
}

AssetType& assetType()
{
    static AssetType type("TestAssetType", L"Design", "TestDocType");
    return type;
}

class Run
{
public:
    bool step(const std::string& name, const std::function<std::string()>& argument)
    {
        const std::map<std::string, std::function<void()>> steps{
            {"new", [&] { make(argument()); }},
            {"box", [&] { box(); }},
            {"boxes", [&] { boxes(std::stoi(argument())); }},
            {"write",
             [&] { std::cout << (controller->writeAll() ? "written" : "not written") << std::endl; }},
            {"work", [&] { work(); }},
            {"save", [&] { last()->saveAs(Strings::widen(argument()), status); }},
            {"path", [&] { last()->path(Strings::widen(argument())); }},
            {"save-again", [&] { std::cout << (last()->save(status) ? "saved" : "not saved") << std::endl; }},
            {"open", [&] { DocumentMgr::get()->open(Strings::widen(argument()), status); }},
            {"close", [&] { DocumentMgr::get()->close(last()); }},
            {"decline", [&] { controller->declined(last()); }},
            {"no-loop", [&] { controller->withoutLoop(true); }},
            {"dirty", [&] { std::cout << (last()->isDirty(false) ? "dirty" : "clean") << std::endl; }},
            {"name", [&] { last()->displayName(Strings::widen(argument())); }},
            {"digest", [&] { std::cout << "digest " << digest() << std::endl; }},
            {"list", [&] { list(); }},
            {"recover", [&] { recover(); }},
            {"take", [&] { letGo(AutoSaveController::Reason::Taken); }},
            {"unwanted", [&] { letGo(AutoSaveController::Reason::Unwanted); }},
            {"copy", [&] { copy(argument()); }},
            {"begin", [&] { transaction = std::make_unique<Transaction>(last()->activeAsset(), L"Step"); }},
            {"commit", [&] { transaction->commit(); }},
            {"disable", [&] { disabler = std::make_unique<AutoSaveDisabler>(last()); }},
            {"enable", [&] { disabler.reset(); }},
            {"off", [&] { AutoSaveOptionsGroup::get()->performAutoSave(false); }},
            {"forget", [&] { controller->keepDiscarded(false); }},
            {"nofork", [&] { forbidProcesses(); }},
            {"kill-at", [&] { arm(Calls::Kind::Kill, std::stoi(argument())); }},
            {"fail-at", [&] { arm(Calls::Kind::Error, std::stoi(argument())); }},
            {"error", [&] { calls.code = std::stoi(argument()); }},
            {"shorter", [&] { arm(Calls::Kind::Shorter, 0); }},
            {"garble", [&] { arm(Calls::Kind::Garble, 0); }},
            {"heal", [&] { arm(Calls::Kind::None, 0); }},
            {"hold", [&] { hold(argument()); }},
            {"die", [] { kill(getpid(), SIGKILL); }},
            {"end", [&] { controller->end(); }}};
        const auto found = steps.find(name);
        if (found == steps.end())
            return false;
        found->second();
        return true;
    }

private:
    static Document* last() { return DocumentMgr::get()->document(DocumentMgr::get()->documents() - 1); }
    void make(const std::string& name)
    {
        DocumentMgr::get()->create(&assetType(), status)->displayName(Strings::widen(name));
    }
    void box()
    {
        ++m_size;
        ModelBuilder(last()->activeAsset()).box(m_size, m_size, m_size, {}, status);
    }
    // Tells the state after each, so that a test knows what may be found.
    void boxes(int count)
    {
        for (int i = 0; i < count; ++i) {
            box();
            std::cout << "digest " << digest() << std::endl;
            controller->writeAll();
        }
    }
    // As the main loop does, for so long that nothing can be left.
    void work()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (controller->work() && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    static uint64_t digest() { return modelDigest(*last()->activeAsset()); }
    std::vector<AutoSavedFileInfo> files() const
    {
        std::vector<AutoSavedFileInfo> found;
        controller->getAllRecoverFiles(found);
        return found;
    }
    void list()
    {
        for (const AutoSavedFileInfo& file : files())
            std::cout << "file " << Strings::narrow(file.fileName()) << '|'
                      << Strings::toBytes(file.oriSourceFile()) << '|' << file.docIdentifier() << '|'
                      << (file.isOlder() ? "older" : "last") << '|' << Strings::toBytes(file.autoSavedFile())
                      << std::endl;
    }
    // As the program does: open, and let go of the file.
    void recover()
    {
        for (const AutoSavedFileInfo& file : files()) {
            if (!DocumentMgr::get()->open(file.autoSavedFile(), status))
                std::cout << "not opened" << std::endl;
            if (controller->deleteARecoveryFile(file.autoSavedFile()))
                std::cout << "digest " << digest() << std::endl;
        }
    }
    void letGo(AutoSaveController::Reason reason)
    {
        for (const AutoSavedFileInfo& file : files())
            controller->deleteARecoveryFile(file.autoSavedFile(), reason);
    }
    void copy(const std::string& target)
    {
        for (const AutoSavedFileInfo& file : files())
            std::cout << (controller->saveRecoveryFileAs(file.autoSavedFile(), Strings::widen(target))
                              ? "copied"
                              : "not copied")
                      << std::endl;
    }
    void arm(Calls::Kind kind, int at)
    {
        calls.kind = kind;
        calls.at = at;
        calls.count = 0;
    }
    // The superuser may always have one more.
    static void forbidProcesses()
    {
        const rlimit none{0, 0};
        if (setrlimit(RLIMIT_NPROC, &none) != 0 || fork() >= 0)
            std::cout << "processes can be made" << std::endl;
    }
    static void hold(const std::string& file)
    {
        std::ofstream(file + ".ready").flush();
        while (!std::filesystem::exists(file))
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }

    AutoSaveController* const controller = AutoSaveController::get();
    Calls calls;
    Listener listener;
    Status status;
    std::unique_ptr<Transaction> transaction;
    std::unique_ptr<AutoSaveDisabler> disabler;
    int m_size = 0;

public:
    Run() { Native::FileCalls::replace(&calls); }
    ~Run() { Native::FileCalls::replace(nullptr); }
};

} // namespace

int main(int count, char** arguments)
{
    const std::vector<std::string> words(arguments + 1, arguments + count);
    PathInfo::profileDirectory(words.at(0));
    DocumentMgr::get()->registerDocumentType(&documentType());
    AssetTypeMgr::get()->registerType(&assetType());
    AutoSaveController::get()->start();
    {
        Run run;
        for (size_t i = 1; i < words.size(); ++i)
            if (!run.step(words[i], [&] { return words.at(++i); })) {
                std::cerr << "what is \"" << words[i] << "\"?\n";
                return 2;
            }
    }
    std::cout << "done" << std::endl;
    // As a run that was told nothing more: what it leaves behind is for the test to say.
    std::_Exit(0);
}
