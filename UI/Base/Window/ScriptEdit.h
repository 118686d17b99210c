#pragma once

#include <QPlainTextEdit>
#include <QTextCursor>

namespace Vu {

/// The lines of ScriptText with their numbers, the breakpoints, and an arrow at the line that runs next. A
/// click on a number sets a breakpoint or removes it.
class ScriptEdit : public QPlainTextEdit
{
public:
    explicit ScriptEdit(QWidget* parent);

    /// From 1.
    int cursorLine() const { return textCursor().blockNumber() + 1; }
    void toggleBreakPoint(int line);
    /// Marks what ScriptDebugInfo says, and brings the line into view at which execution has come to stand.
    void showState();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Numbers;

    int numbersWidth() const;
    void placeNumbers();
    void paintNumbers(QPaintEvent* event);
    void paintMarks(QPainter& painter, int line, const QRect& room) const;
    void showLine(int line);

    QWidget* m_numbers;
    QTextCursor m_stood; ///< In the line where execution stood.
};

} // namespace Vu
