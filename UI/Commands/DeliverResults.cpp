#include "UI/Commands/DeliverResults.h"

#include "Server/Base/Task.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"

#include <QCoreApplication>

namespace Vu::Commands {

namespace {

void deliver(Vs::Tasks* results)
{
    if (ProgressBar::get()->busy())
        Application::get()->deferredTasks()->post([results] { deliver(results); });
    else
        results->runOnce();
}

} // namespace

void deliverResults(Vs::Tasks& results)
{
    results.wakeUp([all = &results] {
        const auto run = [all] { deliver(all); };
        Application::get()->deferredTasks()->post(run);
        if (QCoreApplication* loop = QCoreApplication::instance())
            QMetaObject::invokeMethod(loop, run, Qt::QueuedConnection);
    });
}

} // namespace Vu::Commands
