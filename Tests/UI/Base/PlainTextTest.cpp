// Names and messages come from files, and may look like anything.

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Window/BellButton.h"
#include "UI/Base/Window/BrowserModel.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/NotificationPanel.h"
#include "UI/Base/Window/ProgressPanel.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTextDocument>
#include <QTimer>

using namespace Vu;

namespace {

using PlainTextTest = UiTest;

/// Whether Qt would show exactly these characters.
void expectLetters(const QString& tooltip, const QString& letters)
{
    QTextDocument shown;
    Qt::mightBeRichText(tooltip) ? shown.setHtml(tooltip) : shown.setPlainText(tooltip);
    EXPECT_EQ(shown.toPlainText().simplified().toStdString(), letters.simplified().toStdString());
    EXPECT_FALSE(tooltip.contains(QStringLiteral("<img"))) << tooltip.toStdString();
}

TEST_F(PlainTextTest, NamesAndMessagesAreShownLetterByLetter)
{
    const std::wstring name = L"<img src=\"/dev/zero\"> <b>A & B</b>";
    const QString letters = QString::fromStdWString(name);
    Vs::Asset* asset = newAsset();
    Vs::Status status;
    {
        Vs::Transaction transaction(asset, L"Box");
        Vs::ModelBuilder(asset).box(10, 10, 10, {{}, name, {}}, status);
        transaction.commit();
    }
    Application::get()->needGui();
    BrowserModel model(nullptr);
    model.asset(asset);
    expectLetters(model.data(model.index(0, 0, model.rootIndex()), Qt::ToolTipRole).toString(), letters);

    WorkspaceWindow* shown = WorkspaceMgr::get()->create()->window();
    shown->show();
    auto* window = static_cast<MainWindow*>(shown->widget());
    window->message(letters, true);
    ProgressPanel panel(nullptr);
    panel.begin(letters);
    Vs::NotificationCenter::get()->sendNotification(
        name, name, {}, {}, L"Test", Vs::NotificationType::makeByType(Vs::NotificationType::Error), nullptr);
    window->bell()->click();
    int labels = 0;
    for (const QWidget* widget : {static_cast<QWidget*>(window), static_cast<QWidget*>(&panel)})
        for (const QLabel* label : widget->findChildren<QLabel*>()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->objectName().toStdString();
            if (label->toolTip().isEmpty())
                continue;
            expectLetters(label->toolTip(), letters);
            ++labels;
        }
    window->bell()->panel()->close();
    Vs::NotificationCenter::get()->removeByClientID(L"Test");
    EXPECT_EQ(labels, 4) << "message, work, and the text in the toast and in the list";

    Application::testing(false);
    std::unique_ptr<QTimer> answering(new QTimer);
    int boxes = 0;
    QObject::connect(answering.get(), &QTimer::timeout, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            ++boxes;
            EXPECT_EQ(box->textFormat(), Qt::PlainText);
            EXPECT_EQ(box->text().toStdString(), letters.toStdString());
            box->reject();
        }
    });
    answering->start(10);
    Vu::Display::get()->askMessage(L"", name, 0, {{L"OK", -1, true}}, 0, window);
    Vu::Display::get()->showAbout(name, name, window);
    Application::testing(true);
    EXPECT_EQ(boxes, 2);
}

} // namespace
