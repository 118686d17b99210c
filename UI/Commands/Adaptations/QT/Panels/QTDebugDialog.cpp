#include "UI/Commands/Adaptations/QT/Panels/QTDebugDialog.h"

#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Commands/Adaptations/QT/Panels/OverMainWindow.h"
#include "UI/Commands/Adaptations/QT/Panels/PanelLayout.h"
#include "UI/Commands/Adaptations/QT/Panels/QTDebuggingWidget.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Transcripts/DebugDialog.h"
#include "UI/Commands/Transcripts/DebugDialogCmds.h"
#include "UI/Commands/Transcripts/TranscriptingCmds.h"
#include "UI/Commands/Transcripts/ValidationDialog.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>

namespace Vu::Commands {
namespace {

QPushButton* makeButton(const char* key, const char* title, Vs::ImageSetResource* icon)
{
    auto* button = new QPushButton(iconOf(icon), told(key, title));
    button->setObjectName(QLatin1String(key));
    return button;
}

} // namespace

QTTranscriptingWidget::QTTranscriptingWidget(QWidget* parent)
    : QWidget(parent),
      m_normal(makeButton("TranscriptNormal", "Normal", Resources::StartTranscripting())),
      m_performance(makeButton("TranscriptPerformance", "Performance", Resources::StartTranscripting())),
      m_stop(makeButton("TranscriptStop", "Stop", Resources::StopTranscripting())),
      m_replay(makeButton("TranscriptReplay", "Replay", Resources::ReplayTranscript())),
      m_validation(new QCheckBox(told("TranscriptValidation", "Validation")))
{
    m_validation->setObjectName(QStringLiteral("TranscriptValidation"));
    m_validation->setChecked(ValidationDialog::get()->needToShow());
    using Self = QTTranscriptingWidget;
    connect(m_normal, &QPushButton::clicked, this, &Self::onClickStartNormalTranscriptingButton);
    connect(m_performance, &QPushButton::clicked, this, &Self::onClickStartPerfTranscriptingButton);
    connect(m_stop, &QPushButton::clicked, this, &Self::onClickStopTranscriptingButton);
    connect(m_replay, &QPushButton::clicked, this, &Self::onClickReplayTranscriptButton);
    connect(m_validation, &QCheckBox::clicked, this, &Self::onClickValidationDialogCheck);
    // Connected after the slots above, since they change the state it looks at.
    for (QPushButton* button : {m_performance, m_normal, m_stop})
        connect(button, &QPushButton::clicked, this, &Self::onUpdateTranscriptingButtonConstrains);
    onUpdateTranscriptingButtonConstrains();

    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {m_normal, m_performance, m_stop, m_replay})
        buttons->addWidget(button);
    auto* column = new QVBoxLayout;
    column->addLayout(buttons);
    column->addWidget(m_validation);
    putInGroup(this, told("Transcripting", "Transcripting"), column);
}

void QTTranscriptingWidget::onClickStartNormalTranscriptingButton()
{
    runFromDialog(StartTranscriptingCmdDef::info());
}

void QTTranscriptingWidget::onClickStartPerfTranscriptingButton()
{
    runFromDialog(StartPerfTranscriptingCmdDef::info());
}

void QTTranscriptingWidget::onClickStopTranscriptingButton()
{
    runFromDialog(StopTranscriptingCmdDef::info());
}

void QTTranscriptingWidget::onClickReplayTranscriptButton()
{
    runFromDialog(ReplayTranscriptCmdDef::info());
}

void QTTranscriptingWidget::onClickValidationDialogCheck(bool checked)
{
    ValidationDialog::get()->needToShow(checked);
}

void QTTranscriptingWidget::onUpdateTranscriptingButtonConstrains()
{
    const bool recording = Vs::TranscriptMgr::get()->recording();
    m_normal->setDisabled(recording);
    m_performance->setDisabled(recording);
    m_stop->setDisabled(!recording);
    m_replay->setDisabled(recording);
}

void QTTranscriptingWidget::showEvent(QShowEvent*)
{
    if (ValidationDialog::get()->needToShow())
        ValidationDialog::get()->show(true);
}

void QTTranscriptingWidget::hideEvent(QHideEvent*)
{
    if (ValidationDialog::get()->needToShow())
        ValidationDialog::get()->show(false);
}

QTDebugDialog::QTDebugDialog()
    : QWidget(nullptr, Qt::WindowTitleHint | Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint |
                           Qt::WindowCloseButtonHint)
{
    setWindowTitle(told("DebugDialog", "Debug Dialog"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(new QTTranscriptingWidget);
    column->addWidget(new QTDebuggingWidget);
    adjustSize();
    new OverMainWindow(this);
}

void QTDebugDialog::closeEvent(QCloseEvent*)
{
    runFromDialog(HideDebugDialogCmdDef::info());
}

namespace {

class QtDebugWindow : public DebugWindow
{
public:
    // It may be closing itself right now, so it is deleted in the next turn of the event loop.
    ~QtDebugWindow() override
    {
        m_dialog->hide();
        m_dialog->deleteLater();
    }

    void show(const Vs::Point2& corner) override
    {
        m_dialog->setGeometry(corner.x, corner.y, m_dialog->width(), m_dialog->height());
        m_dialog->show();
    }
    void hide() override { m_dialog->hide(); }
    Vs::Point2 corner() const override
    {
        const QPoint corner = m_dialog->geometry().topLeft();
        return {corner.x(), corner.y()};
    }

private:
    QTDebugDialog* m_dialog = new QTDebugDialog;
};

class QtDebugToolkit : public DebugDialog::Toolkit
{
public:
    QtDebugToolkit() { DebugDialog::toolkit(this); }
    ~QtDebugToolkit() override { DebugDialog::toolkit(nullptr); }

    std::unique_ptr<DebugWindow> makeWindow() override
    {
        Application::get()->needGui();
        return std::make_unique<QtDebugWindow>();
    }
    QRect desktop() const override
    {
        const QScreen* screen = QGuiApplication::primaryScreen();
        return screen ? screen->virtualGeometry() : QRect();
    }
} theToolkit;

} // namespace
} // namespace Vu::Commands
