#pragma once

#include "Server/Base/ScriptDebugInfo.h"

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

/// Loads a text transcript and runs it line by line. What waits within a line, in a nested transcript or in
/// Python, goes on by the same buttons.
class QTDebuggingWidget : public QWidget, private Vs::IScriptDebugInfoObserver
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
    void onScriptDebugInfoChanged() override;
    void showScript(bool shown);

    QPushButton* m_load = nullptr;
    std::unique_ptr<QTShowScriptWidget> m_script; ///< Null until needed.
};

} // namespace Vu::Commands
