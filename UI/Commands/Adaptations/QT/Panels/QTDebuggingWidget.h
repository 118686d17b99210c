#pragma once

#include <QWidget>

#include <memory>

class QCheckBox;
class QPushButton;

namespace Vu::Commands {

/// The window with the script's text.
class QTShowScriptWidget : public QWidget
{
public:
    QTShowScriptWidget();
};

/// Loads a text transcript and runs it line by line.
class QTDebuggingWidget : public QWidget
{
    Q_OBJECT

public:
    explicit QTDebuggingWidget(QWidget* parent = nullptr);
    ~QTDebuggingWidget() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private slots:
    void onClickLoadButton();
    void onClickRunButton();
    void onClickStepOverButton();
    void onClickContinueButton();
    void onClickShowScriptCheck(bool checked);

private:
    void showScript(bool shown);

    std::unique_ptr<QTShowScriptWidget> m_script; ///< Null until needed.
};

} // namespace Vu::Commands
