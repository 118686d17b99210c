#include "UI/Base/Program/EndSignals.h"

#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Program/Private/SuddenEnd.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace Vu {
namespace {

/// What shells tell of a program that a signal ended.
constexpr int kSignalBase = 128;
/// How long it may take until the main thread hears of a signal, and then until everything is kept; in
/// seconds. The child that writes a recovery file goes on without its parent.
constexpr unsigned kLongest = 1;
constexpr unsigned kLongestWrite = 5;

int s_pipe[2] = {-1, -1};
std::atomic<int> s_signal{0};

void onLate(int)
{
    _exit(kSignalBase + s_signal);
}

void onSignal(int signal)
{
    const int before = errno;
    EndSignals::end(signal);
    errno = before;
}

void watch(int signal)
{
    struct sigaction present = {};
    if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN)
        return;
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

/// The desktop's session ends, and asks the program to do so.
class SessionEnd : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object == qApp && event->type() == QEvent::Quit)
            SuddenEnd::now(0);
        return QObject::eventFilter(object, event);
    }
};

} // namespace

void EndSignals::watch()
{
    static bool watched = false;
    if (watched || ::pipe2(s_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    watched = true;
    auto* notifier = new QSocketNotifier(s_pipe[0], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [] {
        ::alarm(kLongestWrite);
        SuddenEnd::now(kSignalBase + s_signal);
    });
    qApp->installEventFilter(new SessionEnd(qApp));
    Display::get()->onSessionEnds([] { static_cast<void>(Vs::AutoSaveController::get()->writeAll()); });
    std::signal(SIGALRM, onLate);
    for (const int signal : {SIGTERM, SIGHUP})
        Vu::watch(signal);
}

void EndSignals::end(int signal) noexcept
{
    s_signal = signal;
    ::alarm(kLongest);
    const char byte = 0;
    // A pipe that is full has been told already.
    if (::write(s_pipe[1], &byte, 1) < 0)
        return;
}

} // namespace Vu
