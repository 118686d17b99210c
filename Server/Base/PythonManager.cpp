#include "Server/Base/PythonManager.h"

#include "Server/Base/Exception.h"
#include "Server/Base/NumberText.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/PythonBackend.h"
#include "Server/Base/Require.h"
#include "Server/Base/ScriptDebugger.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cstdio>

namespace Vs {

namespace {

void tell(const std::wstring& error)
{
    if (TextOutput* output = TextCommandMgr::get()->output())
        output->error(error);
    else
        std::fprintf(stderr, "%s\n", Strings::forTerminal(Strings::narrow(error)).c_str());
    if (TextOutput* display = PythonManager::get()->display())
        display->error(error);
}

constexpr const char* kFolder = "autorun";

/// In the order of their names.
std::vector<boost::filesystem::path> scriptsOf(const boost::filesystem::path& folder)
{
    std::vector<boost::filesystem::path> scripts;
    boost::system::error_code error;
    for (boost::filesystem::directory_iterator each(folder, error), end; !error && each != end;
         each.increment(error)) {
        const boost::filesystem::path& path = each->path();
        if (path.extension() == ".py" && !path.filename().string().starts_with("_"))
            scripts.push_back(path);
    }
    std::sort(scripts.begin(), scripts.end());
    return scripts;
}

void refuse(const boost::filesystem::path& script, const std::string& why, Status& status)
{
    const std::wstring message =
        script.wstring() + L": The script isn't run at the start: " + Strings::fromBytes(why) +
        L". Nobody but this user and root may be able to change it or the folders on the way to it.";
    tell(message);
    status.addError(message);
}

template <class Run>
std::wstring guarded(Status& status, Run run)
{
    try {
        return run(PythonBackend::get());
    } catch (const Exception& error) {
        status.addError(error.message());
    } catch (const std::exception& error) {
        status.addError(L"Python: " + Strings::widen(error.what()));
    }
    return {};
}

/// Of a message as ScriptError makes it; 0 if it names none of that file.
int lineIn(const std::wstring& message, const std::wstring& path)
{
    const std::wstring beginning = path + L':';
    if (!message.starts_with(beginning))
        return 0;
    const size_t end = message.find(L':', beginning.size());
    return readNumber<int>(std::wstring_view(message).substr(0, end).substr(beginning.size())).value_or(0);
}

} // namespace

PythonManager* PythonManager::get()
{
    static PythonManager manager;
    return &manager;
}

std::wstring PythonManager::runScriptFile(const std::wstring& path, Status& status,
                                          const std::vector<std::wstring>& arguments)
{
    assertMainThread();
    Status own;
    TranscriptMgr::Run run;
    ScriptDebugger::File file(path);
    std::wstring result = guarded(
        own, [&](PythonBackend& backend) { return backend.runFile(Strings::toBytes(path), arguments, own); });
    if (const std::wstring left = run.end(); !left.empty())
        own.addError(path + L": " + left);
    const PythonBackend* backend = PythonBackend::running();
    const int code = backend ? backend->exitCode() : 1;
    m_exitCode = own.isOk() ? 0 : std::max(code, 1);
    if (own.isError()) {
        file.stopped(lineIn(own.toString(), path));
        tell(own.toString());
        own.reported(true);
    }
    status.merge(own);
    return result;
}

std::wstring PythonManager::runString(const std::wstring& code, Status& status)
{
    assertMainThread();
    return guarded(status,
                   [&](PythonBackend& backend) { return backend.runString(Strings::narrow(code), status); });
}

bool PythonManager::consoleLine(const std::wstring& line, Status& status)
{
    assertMainThread();
    bool goesOn = false;
    guarded(status, [&](PythonBackend& backend) {
        goesOn = backend.consoleLine(Strings::toBytes(line), status);
        m_exitCode = backend.exitCode();
        return std::wstring();
    });
    return goesOn;
}

void PythonManager::abandonConsoleLines()
{
    Status ignored;
    guarded(ignored, [&](PythonBackend& backend) {
        backend.abandonConsoleLines();
        return std::wstring();
    });
}

std::vector<std::wstring> PythonManager::completions(const std::wstring& beginning)
{
    std::vector<std::wstring> all;
    Status ignored;
    guarded(ignored, [&](PythonBackend& backend) {
        for (const std::string& each : backend.completions(Strings::toBytes(beginning)))
            all.push_back(Strings::fromBytes(each));
        return std::wstring();
    });
    return all;
}

void PythonManager::runTranscript(const std::wstring& path, const ScriptSteps& steps, Status& status)
{
    assertMainThread();
    const std::string file = Strings::toBytes(path);
    guarded(status, [&](PythonBackend& backend) {
        backend.runStatements(file, steps, status);
        return std::wstring();
    });
}

bool PythonManager::started() const
{
    return PythonBackend::running() != nullptr;
}

void PythonManager::shutdown()
{
    assertMainThread();
    PythonBackend::shutdown();
}

PythonAutorunScripts* PythonAutorunScripts::get()
{
    // Never destroyed: its sites may be statics.
    static auto* const scripts = new PythonAutorunScripts;
    return scripts;
}

std::vector<boost::filesystem::path> PythonAutorunScripts::folders()
{
    std::vector<boost::filesystem::path> folders{PathInfo::rootDirectory() / kFolder};
    if (PathInfo::hasHome())
        folders.push_back(PathInfo::scriptsDirectory(false) / kFolder);
    return folders;
}

void PythonAutorunScripts::run(Status& status)
{
    for (const auto& folder : folders())
        for (const boost::filesystem::path& script : scriptsOf(folder)) {
            // The script imports from its own folder.
            std::string why = OwnFiles::othersMayChange(folder);
            if (why.empty())
                why = OwnFiles::othersMayChange(script);
            if (why.empty())
                PythonManager::get()->runScriptFile(script.wstring(), status);
            else
                refuse(script, why, status);
        }
}

bool PythonAutorunScripts::fireClosingDown(Status& status)
{
    bool mayClose = true;
    forEach([&](PythonAutorunEventSite* site) { mayClose = site->closingDown(status) && mayClose; });
    if (PythonBackend* backend = PythonBackend::running())
        mayClose = backend->closingDown(status) && mayClose;
    return mayClose;
}

} // namespace Vs
