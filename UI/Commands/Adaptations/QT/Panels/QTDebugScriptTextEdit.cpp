#include "UI/Commands/Adaptations/QT/Panels/QTDebugScriptTextEdit.h"

#include <QFontDatabase>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTextBlock>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vu::Commands {
namespace {

/// The marks are to the left of the numbers.
constexpr int kMarkWidth = 15;
constexpr int kArrowShaft = 10;

/// One text block for each line, even if it contains other characters that look like line ends.
QString shownLine(const std::string& bytes)
{
    QString line = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    for (QChar& character : line)
        if (character == QLatin1Char('\r') || character == QChar::ParagraphSeparator ||
            character == QChar::LineSeparator || character.isNull())
            character = QLatin1Char(' ');
    return line + QLatin1Char('\n');
}

} // namespace

QTDebugScriptTextEdit::QTDebugScriptTextEdit(QWidget* parent)
    : QPlainTextEdit(parent), m_area(new LineNumberArea(this))
{
    setReadOnly(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    connect(this, &QPlainTextEdit::blockCountChanged, this,
            &QTDebugScriptTextEdit::updateLineNumberAreaWidth);
    connect(this, &QPlainTextEdit::updateRequest, this, &QTDebugScriptTextEdit::updateLineNumberArea);
    updateLineNumberAreaWidth();
    load();
}

QTDebugScriptTextEdit::~QTDebugScriptTextEdit() = default;

void QTDebugScriptTextEdit::load()
{
    Vs::ScriptDebugInfo* info = scriptDebugInfo();
    if (!info || info->scriptPath().empty())
        return;
    const boost::filesystem::path path(info->scriptPath());
    boost::system::error_code error;
    if (!boost::filesystem::exists(path, error))
        return;
    boost::filesystem::ifstream stream(path, std::ios::binary);
    QString text;
    int lines = 0;
    for (std::string line; std::getline(stream, line); ++lines)
        text += shownLine(line);
    info->scriptLines(lines);
    setPlainText(text);
}

void QTDebugScriptTextEdit::onScriptDebugInfoChanged()
{
    const Vs::ScriptDebugInfo* info = scriptDebugInfo();
    if (!info)
        return;
    // Counting the lines is a change as well, and is signalled during the load.
    if (info->needToReload() && !m_loading) {
        m_loading = true;
        load();
        m_loading = false;
    }
    m_area->repaint();
}

int QTDebugScriptTextEdit::lineNumberAreaWidth() const
{
    int digits = 1;
    for (int left = blockCount(); left >= 10; left /= 10)
        ++digits;
    return fontMetrics().horizontalAdvance(QLatin1Char('8')) * digits + kMarkWidth;
}

void QTDebugScriptTextEdit::updateLineNumberAreaWidth()
{
    setViewportMargins(lineNumberAreaWidth(), 0, 0, 0);
}

void QTDebugScriptTextEdit::updateLineNumberArea(const QRect& rect, int dy)
{
    if (dy != 0)
        m_area->scroll(0, dy);
    else
        m_area->update(0, rect.y(), m_area->width(), rect.height());
    if (rect.contains(viewport()->rect()))
        updateLineNumberAreaWidth();
}

void QTDebugScriptTextEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    const QRect inside = contentsRect();
    m_area->setGeometry(inside.left(), inside.top(), lineNumberAreaWidth(), inside.height());
}

void QTDebugScriptTextEdit::paintLineNumbers(QPaintEvent* event)
{
    QPainter painter(m_area);
    painter.setFont(font());
    painter.fillRect(event->rect(), Qt::lightGray);
    const Vs::ScriptDebugInfo* info = scriptDebugInfo();
    const int lines = info ? info->scriptLines() : 0;
    QTextBlock block = firstVisibleBlock();
    int line = block.blockNumber() + 1;
    int top = static_cast<int>(blockBoundingGeometry(block).translated(contentOffset()).top());
    int bottom = top + static_cast<int>(blockBoundingRect(block).height());
    // The last line feed creates a block that isn't a line of the file.
    while (block.isValid() && top <= event->rect().bottom() && line - 1 < lines) {
        if (block.isVisible() && bottom >= event->rect().top()) {
            paintMarks(painter, line, top);
            painter.setPen(Qt::black);
            painter.drawText(0, top, m_area->width(), fontMetrics().height(), Qt::AlignRight,
                             QString::number(line));
        }
        block = block.next();
        top = bottom;
        bottom = top + static_cast<int>(blockBoundingRect(block).height());
        ++line;
    }
}

void QTDebugScriptTextEdit::paintMarks(QPainter& painter, int line, int top) const
{
    const Vs::ScriptDebugInfo* info = scriptDebugInfo();
    const int height = fontMetrics().height();
    if (info->isBreakPoints(line))
        painter.fillRect(0, top + 2, kMarkWidth, height - 4, Qt::red);
    if (!info->isStepLine(line))
        return;
    QPainterPath arrow;
    arrow.addRect(0, top + 4, kArrowShaft, height - 8);
    arrow.moveTo(kArrowShaft, top + 1);
    arrow.lineTo(kMarkWidth, top + height / 2.0);
    arrow.lineTo(kArrowShaft, top + height - 2);
    arrow.lineTo(kArrowShaft, top + 1);
    painter.fillPath(arrow, QBrush(Qt::green, Qt::SolidPattern));
}

void QTDebugScriptTextEdit::toggleBreakPoint(const QPoint& place)
{
    const QPoint inText(place.x() + m_area->width(), place.y());
    const int line = cursorForPosition(inText).blockNumber() + 1;
    if (Vs::ScriptDebugInfo* info = scriptDebugInfo()) {
        if (info->isBreakPoints(line))
            info->removeBreakPoint(line);
        else
            info->addBreakPoint(line);
    }
    setFocus();
}

LineNumberArea::LineNumberArea(QTDebugScriptTextEdit* edit) : QWidget(edit), m_edit(edit)
{
    setObjectName(QStringLiteral("LineNumbers"));
}

QSize LineNumberArea::sizeHint() const
{
    return {m_edit->lineNumberAreaWidth(), 0};
}

void LineNumberArea::paintEvent(QPaintEvent* event)
{
    m_edit->paintLineNumbers(event);
}

void LineNumberArea::mousePressEvent(QMouseEvent* event)
{
    m_edit->toggleBreakPoint(event->position().toPoint());
}

} // namespace Vu::Commands
