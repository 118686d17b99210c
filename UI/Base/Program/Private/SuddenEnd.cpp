#include "UI/Base/Program/Private/SuddenEnd.h"

#include "Server/Base/Strings.h"
#include "Server/Base/UnfinishedFile.h"
#include "Server/DataModel/DocumentLocks.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>
#include <unistd.h>

namespace Vu {
namespace {

/// Of a start that was refused.
constexpr int kRefused = 2;
/// What Xlib and Qt give to exit().
constexpr int kLostDisplay = 1;

bool watching = false;
std::thread::id mainThread;
QtMessageHandler usualHandler = nullptr;

/// A document in the middle of a step stays as it was kept before that step.
void keepDocuments()
{
    // Whoever ends the process from a thread of its own leaves what the last step has left.
    if (std::this_thread::get_id() != mainThread)
        return;
    try {
        static_cast<void>(Vs::AutoSaveController::get()->writeAll());
    } catch (const std::exception&) {
        return; // It was reported, and it is too late to do more.
    }
    Vs::DocumentLocks::get()->end();
}

void leave(int code, void*)
{
    if (!watching)
        return;
    Vs::UnfinishedFile::removeAll();
    std::fflush(nullptr);
    _exit(code);
}

/// What Qt says of a display just before it, or Xlib, calls exit(). There it would be too late to keep
/// anything: what Qt has for each thread is gone then.
bool isLostDisplay(const QString& text)
{
    return text.startsWith(QLatin1String("The X11 connection broke")) ||
           text.startsWith(QLatin1String("The Wayland connection"));
}

void onMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type != QtFatalMsg) {
        usualHandler(type, context, text);
        if (isLostDisplay(text))
            SuddenEnd::now(kLostDisplay);
        return;
    }
    std::fprintf(stderr, "quillet: the window cannot be shown. %s\nWithout a window: quillet --headless\n",
                 Vs::Strings::forTerminal(text.simplified().toStdString()).c_str());
    std::exit(kRefused);
}

} // namespace

void SuddenEnd::watch()
{
    mainThread = std::this_thread::get_id();
    // Exit handlers run in reverse order.
    on_exit(leave, nullptr);
    if (!watching)
        usualHandler = qInstallMessageHandler(onMessage);
    watching = true;
}

void SuddenEnd::now(int code)
{
    keepDocuments();
    Vs::UnfinishedFile::removeAll();
    std::fflush(nullptr);
    _exit(code);
}

void SuddenEnd::over()
{
    if (watching)
        qInstallMessageHandler(usualHandler);
    watching = false;
}

} // namespace Vu
