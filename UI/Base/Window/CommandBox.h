#pragma once

#include "UI/Base/Window/ClickedLines.h"
#include "UI/Base/Window/LineCompletion.h"
#include "UI/Base/Window/LineHistory.h"

#include <QFrame>
#include <QPointer>

#include <memory>

class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QToolButton;

namespace Vu {

class CommandAnswers;
class CompletionPopup;
class PythonLine;

/// The line in which text commands are typed. Tab completes, Up and Down go through the lines that were run
/// before, Return runs the line. While it is empty, it shows the line for the last action by hand, which Up
/// brings into it. A line that fails stays, in red, with the reason below it; the answer of one that succeeds
/// replaces it. Answers cover what is above the line, which keeps its place; Escape removes them.
///
/// The output and errors of scripts are appended to the output below as they run.
///
/// The button before the line, or ">>>" in an empty one, makes it a line of Python, with a separate history,
/// whose statements and answers are listed below each other. Backspace in an empty line switches back to
/// commands.
class CommandBox : public QFrame
{
public:
    explicit CommandBox(QWidget* parent);
    ~CommandBox() override;

    QLineEdit* edit() const { return m_edit; }
    /// The candidates; hidden while there are none.
    QListWidget* popup() const;
    /// The one-line answer or the reason of a failure.
    QLabel* answer() const;
    /// Answers of several lines.
    QPlainTextEdit* output() const;
    bool failed() const { return m_failed; }
    /// Chooses between lines of commands and of Python.
    QToolButton* language() const { return m_language; }
    bool takesPython() const { return m_python != nullptr && m_takesPython; }
    void takesPython(bool takes);

    void run();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    bool key(int key);
    bool tab();
    bool up();
    bool down();
    bool escape();
    void accept(int row);
    void recall(int step);
    LineHistory& history();
    void typed();
    void runPython();
    void showLanguage();
    bool backspace();
    void showFailed(bool failed);
    void showClicked(const std::wstring& line);

    ClickedLines m_clickedLines{[this](const std::wstring& line) { showClicked(line); }};
    QString m_clicked; ///< The last action by hand, as a line.
    QLineEdit* m_edit;
    QPointer<CommandAnswers> m_answers; ///< A child of the window, which may go first.
    CompletionPopup* m_popup;
    LineCompletion m_completion;
    QToolButton* m_language;
    LineHistory m_history;
    std::unique_ptr<PythonLine> m_python; ///< Null until needed.
    bool m_takesPython = false;
    bool m_failed = false;
};

} // namespace Vu
