#pragma once

#include <QWidget>

class QCheckBox;
class QPushButton;

namespace Vu::Commands {

/// The buttons that record and replay transcripts.
class QTTranscriptingWidget : public QWidget
{
    Q_OBJECT

public:
    explicit QTTranscriptingWidget(QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private slots:
    void onClickStartNormalTranscriptingButton();
    void onClickStartPerfTranscriptingButton();
    void onClickStopTranscriptingButton();
    void onClickReplayTranscriptButton();
    void onClickValidationDialogCheck(bool checked);
    void onUpdateTranscriptingButtonConstrains();

private:
    QPushButton* m_normal;
    QPushButton* m_performance;
    QPushButton* m_stop;
    QPushButton* m_replay;
    QCheckBox* m_validation;
};

/// The window of DebugDialog. Closing it hides the dialog.
class QTDebugDialog : public QWidget
{
public:
    QTDebugDialog();

protected:
    void closeEvent(QCloseEvent* event) override;
};

} // namespace Vu::Commands
