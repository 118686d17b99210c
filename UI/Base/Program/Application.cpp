#include "UI/Base/Program/Application.h"

#include "Server/Base/Require.h"
#include "Server/Base/RunOptions.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/Scene/FinerMeshes.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/About.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Base/Program/Private/ApplicationHost.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Program/Private/SuddenEnd.h"
#include "UI/Base/Program/ProgressBar.h"

#include <QCoreApplication>
#include <QTimer>

#include <atomic>

namespace Vu {
namespace {

/// How often an idle task that asks to run again does so.
constexpr int kIdleInterval = 16;

struct Start
{
    int* count = nullptr;
    char** arguments = nullptr;
    bool headless = true;
    bool testing = false;
};

Start& start()
{
    static Start data;
    return data;
}

} // namespace

struct Application::Data
{
    Vs::Tasks deferred;
    Vs::Tasks idle;
    std::unique_ptr<QCoreApplication> gui;
    std::unique_ptr<QTimer> idleTimer;
    std::atomic<bool> deferredPosted{false};
    int exitCode = 0;
    bool closesDocuments = true;
};

Application* Application::get()
{
    // Lives to the end of the process: add-ins may still use it while being destroyed.
    static auto* const application = new Application;
    return application;
}

Application::Application() : m_data(std::make_unique<Data>())
{
    m_data->deferred.wakeUp([this] { wakeUp(); });
    m_data->idle.wakeUp([this] { wakeUp(); });
}

Application::~Application() = default;

void Application::initialize(int& count, char** arguments, bool headless)
{
    Vs::assertMainThread();
    Vs::require(!start().count && arguments, "a program begins once, with its arguments");
    start() = {&count, arguments, headless, start().testing};
    if (headless) {
        // What a script opens and saves doesn't count as the user's own documents, and moves no dialog of
        // theirs.
        Vs::RunOptions::add("UIBase", "lastDirectory");
        for (const char* group : {"RecentDocuments", "RecentFiles", "RecentScripts"})
            Vs::RunOptions::add(group, "");
    }
    get();
}

bool Application::headless()
{
    return start().headless;
}

bool Application::testing()
{
    return start().testing;
}

void Application::testing(bool value)
{
    start().testing = value;
}

void Application::needGui()
{
    Vs::assertMainThread();
    if (QCoreApplication::instance())
        return;
    static int noArguments = 1;
    static char name[] = "quillet";
    static char* nameOnly[] = {name, nullptr};
    const Start& given = start();
    Display* display = Display::get();
    for (const std::string& part : m_windowParts)
        const Vs::SiblingLibrary opened(part);
    m_windowParts.clear();
    if (!headless())
        SuddenEnd::watch();
    m_data->gui = given.count ? display->makeApplication(*given.count, given.arguments, headless())
                              : display->makeApplication(noArguments, nameOnly, headless());
    if (!headless())
        SuddenEnd::watch(); // Again: before what Qt has made by now.
    m_data->idleTimer = std::make_unique<QTimer>();
    m_data->idleTimer->setSingleShot(true);
    QObject::connect(m_data->idleTimer.get(), &QTimer::timeout, m_data->gui.get(), [this] { runIdle(); });
    wakeUp();
}

void Application::addWindowPart(std::string library)
{
    if (m_data->gui)
        const Vs::SiblingLibrary opened(library);
    else
        m_windowParts.push_back(std::move(library));
}

Vs::Tasks* Application::deferredTasks()
{
    return &m_data->deferred;
}

Vs::Tasks* Application::idleTasks()
{
    return &m_data->idle;
}

/// Any thread.
void Application::wakeUp()
{
    QCoreApplication* loop = QCoreApplication::instance();
    if (!loop || m_data->deferredPosted.exchange(true))
        return;
    QMetaObject::invokeMethod(
        loop,
        [this] {
            m_data->deferredPosted = false;
            runDeferred();
        },
        Qt::QueuedConnection);
}

template <class Action>
void Application::guarded(Action&& action)
{
    try {
        action();
    } catch (const std::exception& error) {
        inform(localizedFormat("TaskFailed", "A task failed: %1%", Vs::Strings::widen(error.what())));
    }
}

void Application::runDeferred()
{
    // While work runs inside a command, what must not run inside that command waits.
    if (ProgressBar::get()->busy())
        return;
    guarded([this] { m_data->deferred.runOnce(); });
    if (!m_data->deferred.empty())
        wakeUp();
    if (m_data->idleTimer && !m_data->idle.empty() && !m_data->idleTimer->isActive())
        m_data->idleTimer->start(0);
}

void Application::runIdle()
{
    if (ProgressBar::get()->busy())
        return;
    guarded([this] { m_data->idle.runOnce(); });
    if (!m_data->idle.empty())
        m_data->idleTimer->start(kIdleInterval);
}

void Application::flushDeferredTasks()
{
    guarded([this] { m_data->deferred.flush(); });
}

void Application::processEvents()
{
    guarded([this] { m_data->deferred.runOnce(); });
    if (m_data->gui)
        QCoreApplication::processEvents();
    guarded([this] { m_data->idle.runOnce(); });
}

int Application::run()
{
    Vs::assertMainThread();
    needGui();
    if (m_exiting)
        return m_data->exitCode;
    wakeUp();
    return Display::get()->run();
}

void Application::exit(bool closeDocuments)
{
    Vs::assertMainThread();
    if (m_exiting || (!closeDocuments && !ApplicationHost::get()->mayLeaveDocuments()))
        return;
    m_exiting = true;
    m_data->closesDocuments = closeDocuments;
    // The caller may be a command of the window being closed.
    m_data->deferred.post([this] {
        if (m_data->gui)
            QCoreApplication::exit(m_data->exitCode);
    });
}

void Application::shutDown()
{
    Vs::assertMainThread();
    SuddenEnd::over();
    guarded([this] { m_data->deferred.flush(); });
    // Those of a session end with it.
    CommandMgr::get()->terminateAll(ETerminationReason::Cancel);
    // Shells hold locks on what they show, so they go before the documents.
    ApplicationHost::get()->closeWindows();
    Vs::Scene::FinerMeshes::get().stop();
    Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    while (m_data->closesDocuments && documents->documents() > 0)
        documents->close(documents->document(documents->documents() - 1));
    m_data->idleTimer.reset();
    m_data->gui.reset();
}

void Application::showAboutBox(bool extended)
{
    const std::wstring text = extended ? aboutText() + L"\n\n" + aboutDetails() : aboutText();
    if (somebodyIsThere())
        Display::get()->showAbout(localized("AboutTitle", "About Quillet"), text, mainWidget());
    else
        inform(text);
}

void Application::showPreferences()
{
    if (somebodyIsThere())
        Display::get()->showPreferences(mainWidget());
    else
        inform(localized("PreferencesByLines",
                         "Options.List lists the preferences, Options.Set sets one of them."));
}

QWidget* Application::mainWidget() const
{
    return ApplicationHost::get()->mainWidget();
}

void Application::inform(const std::wstring& message)
{
    Vs::assertMainThread();
    CommandMgr::get()->GetAlertController()->addAlert(EAlertSeverity::Information, message);
    if (!ApplicationHost::get()->showMessage(message))
        Vs::warn(message);
}

} // namespace Vu
