// A run of a program that keeps recovery files: performs the steps on its command line, until it ends or is
// killed. One process for each run, since what counts is what a process leaves behind.
//
// recovery_probe PROFILE STEP...

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
#include "Server/DataModel/TransactionMgr.h"
#include "Tests/Server/DataModel/Recovery/FaultyCalls.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <sys/resource.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace Vs;

namespace {

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
            {"line", [&] { line(); }},
            {"until-kept", [] { untilKept(); }},
            {"save", [&] { last()->saveAs(Strings::widen(argument()), status); }},
            {"path", [&] { last()->path(Strings::widen(argument())); }},
            {"save-again", [&] { std::cout << (last()->save(status) ? "saved" : "not saved") << std::endl; }},
            {"open", [&] { DocumentMgr::get()->open(Strings::widen(argument()), status); }},
            {"close", [&] { DocumentMgr::get()->close(last()); }},
            {"decline", [&] { controller->declined(last()); }},
            {"no-loop", [&] { controller->withoutLoop(true); }},
            {"dirty", [&] { std::cout << (last()->isDirty(false) ? "dirty" : "clean") << std::endl; }},
            {"name", [&] { rename(Strings::widen(argument())); }},
            {"digest", [&] { tellDigest(); }},
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
            {"kill-at", [&] { calls.arm(FaultyCalls::Kind::Kill, std::stoi(argument())); }},
            {"fail-at", [&] { calls.arm(FaultyCalls::Kind::Error, std::stoi(argument())); }},
            {"error", [&] { calls.code = std::stoi(argument()); }},
            {"shorter", [&] { calls.arm(FaultyCalls::Kind::Shorter); }},
            {"garble", [&] { calls.arm(FaultyCalls::Kind::Garble); }},
            {"heal", [&] { calls.arm(FaultyCalls::Kind::None); }},
            {"count", [&] { std::cout << "calls " << calls.count() << std::endl; }},
            {"volatile",
             [&] {
                 const std::string folder = PathInfo::recoveryDirectory().string();
                 calls.onVolatileDisk(folder, argument());
             }},
            {"seed", [&] { calls.seed = static_cast<uint32_t>(std::stoul(argument())); }},
            {"power-at", [&] { calls.arm(FaultyCalls::Kind::PowerLoss, std::stoi(argument())); }},
            {"random", [&] { random(argument()); }},
            {"vanish", [] { std::filesystem::remove_all(PathInfo::recoveryDirectory().string()); }},
            {"die-after", [&] { dieAfter(std::stoi(argument())); }},
            {"slow", [&] { slow = std::chrono::milliseconds(std::stoi(argument())); }},
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
    static void rename(const std::wstring& name)
    {
        if (DocumentMgr::get()->documents() > 0)
            last()->displayName(name);
    }
    void box()
    {
        ++m_size;
        if (DocumentMgr::get()->documents() == 0)
            return; // Nothing could be opened.
        ModelBuilder(last()->activeAsset()).box(m_size, m_size, m_size, {}, status);
    }
    // Like a line of a script, after which a file is begun if there is none.
    void line()
    {
        controller->lineBegins();
        box();
        controller->lineDone(L"a line");
    }
    // Until a file exists that the controller doesn't know about yet.
    static void untilKept()
    {
        const auto isThere = [] {
            for (const auto& entry :
                 std::filesystem::recursive_directory_iterator(PathInfo::recoveryDirectory().string()))
                if (entry.path().extension() == ".backup")
                    return true;
            return false;
        };
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!isThere() && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    // Reports the state after each, so that a test knows what may be found.
    void boxes(int count)
    {
        for (int i = 0; i < count; ++i) {
            box();
            std::cout << "digest " << digest() << std::endl;
            controller->writeAll();
        }
    }
    // Like the main loop, for long enough that nothing can be left.
    void work()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (controller->work() && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    static void tellDigest()
    {
        if (DocumentMgr::get()->documents() > 0)
            std::cout << "digest " << digest() << std::endl;
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
    // Like the program: opens the file and releases it.
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
    // Like somebody working, or a script, until somebody else ends it: reports the state after each step.
    void random(const std::string& seed)
    {
        std::mt19937 choose(static_cast<unsigned>(std::stoul(seed)));
        make("Part");
        while (true) {
            const auto what = choose() % 10;
            if (TransactionMgr history(last()->activeAsset()); what == 0 && history.canUndo(nullptr))
                history.undo(nullptr);
            else
                box();
            std::cout << "digest " << digest() << std::endl;
            const auto end = std::chrono::steady_clock::now() + slow * (choose() % 8);
            bool pending = true;
            do {
                if (!controller->work() && std::exchange(pending, false))
                    std::cout << "safe" << std::endl;
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            } while (std::chrono::steady_clock::now() < end);
        }
    }
    // By a timer that a forked child doesn't inherit.
    static void dieAfter(int milliseconds)
    {
        std::signal(SIGALRM, [](int) { kill(getpid(), SIGKILL); });
        const itimerval time{{}, {milliseconds / 1000, milliseconds % 1000 * 1000}};
        setitimer(ITIMER_REAL, &time, nullptr);
    }
    // The superuser may always create one more.
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
    FaultyCalls calls;
    Listener listener;
    Status status;
    std::unique_ptr<Transaction> transaction;
    std::unique_ptr<AutoSaveDisabler> disabler;
    int m_size = 0;
    std::chrono::milliseconds slow{0}; ///< What a step of a random session waits for, at most eight times.

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
    // Like a run that gets no further input: what it leaves behind is for the test to judge.
    std::_Exit(0);
}
