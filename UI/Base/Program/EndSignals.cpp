#include "UI/Base/Program/EndSignals.h"

#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Program/Private/SuddenEnd.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

namespace Vu {
namespace {

/// What shells tell of a program that a signal ended.
constexpr int kSignalBase = 128;
/// How much processor time the program may use before the main thread hears of a signal, and how long that,
/// and then keeping everything, may take at all; in seconds. By the clock alone, a busy machine would lose
/// what isn't kept yet. The child that writes a recovery file goes on without its parent.
constexpr time_t kLongestWork = 2;
constexpr unsigned kLongest = 5;

int s_pipe[2] = {-1, -1};
std::atomic<int> s_signal{0};

void onLate(int)
{
    _exit(kSignalBase + s_signal);
}

/// 0 for no limit.
void limitWork(time_t seconds)
{
    const itimerval limit = {{0, 0}, {seconds, 0}};
    ::setitimer(ITIMER_PROF, &limit, nullptr);
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
        limitWork(0);
        ::alarm(kLongest);
        SuddenEnd::now(kSignalBase + s_signal);
    });
    qApp->installEventFilter(new SessionEnd(qApp));
    Display::get()->onSessionEnds([] { static_cast<void>(Vs::AutoSaveController::get()->writeAll()); });
    std::signal(SIGALRM, onLate);
    std::signal(SIGPROF, onLate);
    for (const int signal : {SIGTERM, SIGHUP})
        Vu::watch(signal);
}

void EndSignals::end(int signal) noexcept
{
    s_signal = signal;
    limitWork(kLongestWork);
    ::alarm(kLongest);
    const char byte = 0;
    // A pipe that is full has been told already.
    if (::write(s_pipe[1], &byte, 1) < 0)
        return;
}

} // namespace Vu
