#include "UI/Base/Program/Private/SuddenEnd.h"

#include "Server/Base/Strings.h"
#include "Server/Base/UnfinishedFile.h"

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace Vu {
namespace {

/// Of a start that was refused.
constexpr int kRefused = 2;

bool watching = false;
QtMessageHandler usualHandler = nullptr;

void leave(int code, void*)
{
    if (!watching)
        return;
    Vs::UnfinishedFile::removeAll();
    std::fflush(nullptr);
    _exit(code);
}

void onMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type != QtFatalMsg) {
        usualHandler(type, context, text);
        return;
    }
    std::fprintf(stderr, "quillet: the window cannot be shown. %s\nWithout a window: quillet --headless\n",
                 Vs::Strings::forTerminal(text.simplified().toStdString()).c_str());
    std::exit(kRefused);
}

} // namespace

void SuddenEnd::watch()
{
    // Of all that is called at the end, the latest comes first.
    on_exit(leave, nullptr);
    if (!watching)
        usualHandler = qInstallMessageHandler(onMessage);
    watching = true;
}

void SuddenEnd::over()
{
    if (watching)
        qInstallMessageHandler(usualHandler);
    watching = false;
}

} // namespace Vu
