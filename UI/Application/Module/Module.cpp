// The module _quillet for a Python other than the program's own: importing it starts the application without
// a window, in that Python's process.

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Application/Revision.h"
#include "UI/Application/Start.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AutoSaving.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <boost/filesystem/operations.hpp>

#include <Python.h>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

extern "C" PyObject* makeQuilletModule(void (*end)());

namespace {

using namespace Quillet;

/// The process is the script: its lines' effects are completed one by one, and what it leaves open is
/// reported.
std::unique_ptr<Vs::TranscriptMgr::Run>& script()
{
    static std::unique_ptr<Vs::TranscriptMgr::Run> run;
    return run;
}

void start()
{
    static int count = 1;
    static char name[] = "quillet";
    static char* arguments[] = {name, nullptr};
    Vs::SoftwareVersion::currentRevision(kRevision);
    const char* profile = std::getenv("QUILLET_PROFILE_DIR");
    if (!takeProfile(profile ? profile : ""))
        throw std::runtime_error("the profile folder cannot be used");
    Vu::installHost();
    Vu::Application::initialize(count, arguments, true);
    takeLanguage(true);
    bool whole = true;
    if (!loadAddIns(whole))
        throw std::runtime_error("the application cannot be started");
    boost::system::error_code gone;
    Vs::TranscriptMgr::get()->parameters({{"out", boost::filesystem::current_path(gone).string()}});
    Vu::AutoSaving::begin();
    Vu::WorkspaceMgr::get()->create();
    script() = std::make_unique<Vs::TranscriptMgr::Run>();
}

void atEnd()
{
    Py_BEGIN_ALLOW_THREADS;
    if (const std::wstring left = script()->end(); !left.empty())
        complain(Vs::Strings::narrow(left));
    script().reset();
    Vu::Application::get()->flushDeferredTasks();
    end();
    Py_END_ALLOW_THREADS;
}

} // namespace

extern "C" __attribute__((visibility("default"))) PyObject* PyInit__quillet()
{
    static bool started = false;
    if (started) {
        PyErr_SetString(PyExc_ImportError, "the application starts once in a process");
        return nullptr;
    }
    started = true;
    try {
        start();
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_ImportError, error.what());
        return nullptr;
    }
    return makeQuilletModule(&atEnd);
}
