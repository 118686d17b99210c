#pragma once

#include "Server/Base/TextCommandMgr.h"

#include <QFrame>
#include <QString>

#include <string>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace Vu {

/// What the command line has to say: the answer of a line, the reason why it failed, and what scripts print
/// while they run. It lies above the line, over what is there, and is only seen while it says something.
class CommandAnswers : public QFrame, private Vs::TextOutput
{
public:
    /// A child of the line's window. `line` outlives it.
    explicit CommandAnswers(QLineEdit* line);
    ~CommandAnswers() override;

    /// A line is going to run. What it prints comes before its answer and is kept with it.
    void begin() { m_printed = false; }
    /// One that fails has a reason in red instead. Cells that are separated by tabs stand in columns.
    void tell(const QString& answer, bool failed);
    void print(const QString& text, const QColor& colour);
    void hideAnswer();
    void hideAll();
    void clearOutput();
    bool saysNothing() const;
    /// Follows the line, after that has moved.
    void place();

    QLabel* answer() const { return m_answer; }
    QPlainTextEdit* output() const { return m_output; }

private:
    void message(const std::wstring& text) override;
    void error(const std::wstring& text) override;
    void fitOutput();

    QLineEdit* m_line;
    QLabel* m_answer;
    QPlainTextEdit* m_output;
    bool m_printed = false; ///< The running line has run a script that printed.
};

} // namespace Vu
