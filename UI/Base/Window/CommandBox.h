#pragma once

#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Window/ClickedLines.h"

#include <QFrame>
#include <QPointer>
#include <QStringList>

class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;

namespace Vu {

/// The line in which text commands are typed. Tab completes, Up and Down go through the lines that were run
/// before, Return runs the line. While it is empty, it shows the line of what was done by hand last, which Up
/// brings into it. A line that fails stays, in red, with the reason below it; the answer of one
/// that succeeds is shown in its place.
/// Answers lie over what is above the line, which keeps its place; Escape takes them away.
///
/// What scripts print, and where they fail, comes into the output below what is there, as they run.
class CommandBox : public QFrame, private Vs::TextOutput
{
public:
    explicit CommandBox(QWidget* parent);
    ~CommandBox() override;

    QLineEdit* edit() const { return m_edit; }
    /// The candidates; hidden while there are none.
    QListWidget* popup() const { return m_popup; }
    /// The one-line answer or the reason of a failure.
    QLabel* answer() const { return m_answer; }
    /// Answers of several lines.
    QPlainTextEdit* output() const { return m_output; }
    bool failed() const { return m_failed; }

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
    void offer();
    void hideOffer();
    void accept(int row);
    void replaceWord(const QString& text);
    QString word() const;
    void recall(int step);
    void remember(const QString& line);
    void showFailed(bool failed);
    void showAnswer(const QString& text, bool failed);
    void message(const std::wstring& text) override;
    void error(const std::wstring& text) override;
    void print(const std::wstring& text, const QColor& colour);
    void fitOutput();
    /// Shows the answers above the line, if there are any.
    void placeAnswers();

    void showClicked(const std::wstring& line);

    ClickedLines m_clickedLines{[this](const std::wstring& line) { showClicked(line); }};
    QString m_clicked;          ///< What was done by hand last, as a line.
    QPointer<QFrame> m_answers; ///< With the answer and the output; a child of the window.
    QLineEdit* m_edit;
    QLabel* m_answer;
    QPlainTextEdit* m_output;
    QListWidget* m_popup;
    QStringList m_history;
    QString m_unfinished; ///< What was typed before Up was pressed first.
    qsizetype m_place = 0;
    bool m_failed = false;
    bool m_printed = false; ///< The line that runs has run a script that printed.
};

} // namespace Vu
