#include "Tests/UI/Commands/Transcripts/Debugging.h"

#include "Server/Base/ScriptDebugger.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

#include <QApplication>
#include <QCheckBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include <boost/filesystem/fstream.hpp>

namespace CommandsTests {

using Vu::FileDialog;

void Debugging::SetUp()
{
    WithProgram::SetUp();
    emptyScratch(L"debugging");
}

void Debugging::TearDown()
{
    answer(L"Debug.ShowDebugDialog /off");
    Vu::UIBaseOptionGroup* options = Vu::UIBaseOptionGroup::get();
    options->showDebugScriptWidget(false);
    options->debugDialogPos({400, 300});
    Vs::TranscriptMgr::get()->endRecording();
    debug().scriptPath({});
    debug().removeAllBreakPoints();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    WithProgram::TearDown();
}

std::wstring Debugging::script(const std::wstring& name, const std::string& content)
{
    boost::filesystem::ofstream(boost::filesystem::path(file(name))) << content;
    return file(name);
}

void Debugging::fileDialogAnswers(const std::wstring& path)
{
    FileDialog::responder([path](const FileDialog::Request&, std::vector<std::wstring>& names) {
        names = {path};
        return !path.empty();
    });
}

QWidget* Debugging::window(const QString& title)
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->windowTitle() == title)
            return widget;
    return nullptr;
}

QPushButton* Debugging::button(const char* name)
{
    return dialog()->findChild<QPushButton*>(QLatin1String(name));
}

void Debugging::click(const char* name)
{
    QTest::mouseClick(button(name), Qt::LeftButton);
    run(L"");
}

QPlainTextEdit* Debugging::scriptText()
{
    auto* check = dialog()->findChild<QCheckBox*>(QStringLiteral("DebugScript"));
    if (!check->isChecked())
        QTest::mouseClick(check, Qt::LeftButton, Qt::NoModifier, QPoint(8, check->height() / 2));
    QWidget* shown = window(QStringLiteral("Script"));
    return shown ? shown->findChild<QPlainTextEdit*>() : nullptr;
}

} // namespace CommandsTests
