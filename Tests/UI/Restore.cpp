#include "Tests/UI/Restore.h"

#include "Server/Base/OptionGroup.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/OptionGroups.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/RecentDocumentMgr.h"

#include <QCursor>
#include <QGuiApplication>
#include <QWindow>

#include <boost/filesystem/operations.hpp>

void UiTests::restore()
{
    Vu::RecentDocumentMgr::get()->clearRecent();
    Vu::CommandMgr::get()->GetAlertController()->clearAllAlerts();
    for (Vs::Notification* notification : Vs::NotificationCenter::get()->notifications())
        Vs::NotificationCenter::get()->remove(notification);
    for (Vs::OptionGroup* group : Vs::optionGroups())
        group->reset();
    boost::filesystem::remove_all(Vs::PathInfo::temporaryDirectory(false));
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        QCursor::setPos(-1000, -1000);
        // A window that a test left open would keep mouse and keyboard from those of other tests.
        for (QWindow* window : QGuiApplication::topLevelWindows())
            if (window->modality() != Qt::NonModal)
                window->close();
    }
}
