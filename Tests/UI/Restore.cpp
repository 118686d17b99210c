#include "Tests/UI/Restore.h"

#include "Server/Base/OptionGroup.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Private/OptionGroups.h"
#include "UI/Base/Session/RecentDocumentMgr.h"

#include <QCursor>
#include <QGuiApplication>

#include <boost/filesystem/operations.hpp>

void UiTests::restore()
{
    Vu::RecentDocumentMgr::get()->clearRecent();
    for (Vs::OptionGroup* group : Vs::optionGroups())
        group->reset();
    boost::filesystem::remove_all(Vs::PathInfo::temporaryDirectory(false));
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        QCursor::setPos(-1000, -1000);
}
