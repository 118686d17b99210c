#pragma once

#include "Server/Base/ScriptDebugInfo.h"

#include <QPlainTextEdit>

namespace Vu::Commands {

class LineNumberArea;

/// The text of the transcript loaded in the debugger, with its line numbers, breakpoints and the line at
/// which execution is paused.
class QTDebugScriptTextEdit : public QPlainTextEdit, public Vs::IScriptDebugInfoObserver
{
    Q_OBJECT

public:
    explicit QTDebugScriptTextEdit(QWidget* parent = nullptr);
    ~QTDebugScriptTextEdit() override;

    void onScriptDebugInfoChanged() override;

    /// In pixels, with room for the marks.
    int lineNumberAreaWidth() const;
    void paintLineNumbers(QPaintEvent* event);
    /// Toggles the breakpoint on the line at this position of the area.
    void toggleBreakPoint(const QPoint& place);

protected:
    void resizeEvent(QResizeEvent* event) override;

private slots:
    void updateLineNumberAreaWidth();
    void updateLineNumberArea(const QRect& rect, int dy);

private:
    void load();
    void paintMarks(QPainter& painter, int line, int top) const;

    LineNumberArea* m_area;
    bool m_loading = false;
};

/// The strip beside the text.
class LineNumberArea : public QWidget
{
public:
    explicit LineNumberArea(QTDebugScriptTextEdit* edit);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QTDebugScriptTextEdit* m_edit;
};

} // namespace Vu::Commands
