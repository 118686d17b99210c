#include "Server/Base/PythonManager.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/PythonBackend.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"

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
        std::fprintf(stderr, "%s\n", Strings::narrow(error).c_str());
    if (TextOutput* display = PythonManager::get()->display())
        display->error(error);
}

constexpr const char* kFolder = "autorun";

/// In the order of their names.
std::vector<std::wstring> scriptsOf(const boost::filesystem::path& folder)
{
    std::vector<std::wstring> scripts;
    boost::system::error_code error;
    for (boost::filesystem::directory_iterator each(folder, error), end; !error && each != end;
         each.increment(error)) {
        const boost::filesystem::path& path = each->path();
        if (path.extension() == ".py" && !path.filename().string().starts_with("_"))
            scripts.push_back(path.wstring());
    }
    std::sort(scripts.begin(), scripts.end());
    return scripts;
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
    std::wstring result = guarded(
        own, [&](PythonBackend& backend) { return backend.runFile(Strings::narrow(path), arguments, own); });
    if (own.isError()) {
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

void PythonManager::runTranscript(const std::wstring& path, const ScriptSteps& steps, Status& status)
{
    assertMainThread();
    const std::string file = Strings::narrow(path);
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
    static PythonAutorunScripts scripts;
    return &scripts;
}

std::vector<boost::filesystem::path> PythonAutorunScripts::folders()
{
    return {PathInfo::rootDirectory() / kFolder, PathInfo::scriptsDirectory(false) / kFolder};
}

void PythonAutorunScripts::run(Status& status)
{
    for (const auto& folder : folders())
        for (const std::wstring& script : scriptsOf(folder))
            PythonManager::get()->runScriptFile(script, status);
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
