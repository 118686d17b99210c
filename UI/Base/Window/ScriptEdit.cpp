#include "UI/Base/Window/ScriptEdit.h"

#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Window/ScriptText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"

#include <QFontDatabase>
#include <QMouseEvent>
#include <QPainter>
#include <QTextBlock>

namespace Vu {
namespace {

constexpr int kMarks = 16;

Vs::ScriptDebugInfo& info()
{
    return *Vs::TranscriptMgr::get()->scriptDebugInfo();
}

} // namespace

class ScriptEdit::Numbers : public QWidget
{
public:
    explicit Numbers(ScriptEdit* edit) : QWidget(edit), m_edit(edit)
    {
        setObjectName(QStringLiteral("scriptNumbers"));
    }

protected:
    void paintEvent(QPaintEvent* event) override { m_edit->paintNumbers(event); }
    void mousePressEvent(QMouseEvent* event) override
    {
        const int y = event->position().toPoint().y();
        m_edit->toggleBreakPoint(m_edit->cursorForPosition({0, y}).blockNumber() + 1);
        m_edit->setFocus();
    }

private:
    ScriptEdit* m_edit;
};

ScriptEdit::ScriptEdit(QWidget* parent) : QPlainTextEdit(parent), m_numbers(new Numbers(this))
{
    setObjectName(QStringLiteral("scriptEdit"));
    setAccessibleName(told("ScriptLines", "Lines of the script"));
    setDocument(ScriptText::get()->document());
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setFrameShape(QFrame::NoFrame);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // Tab leads on to the buttons, as from any other field.
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::blockCountChanged, this, [this] { placeNumbers(); });
    connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int dy) {
        if (dy != 0)
            m_numbers->scroll(0, dy);
        else
            m_numbers->update(0, rect.y(), m_numbers->width(), rect.height());
    });
    placeNumbers();
    showState();
}

int ScriptEdit::numbersWidth() const
{
    const auto digits = QString::number(blockCount()).size();
    return kMarks + kMargin + fontMetrics().horizontalAdvance(QLatin1Char('8')) * static_cast<int>(digits);
}

void ScriptEdit::placeNumbers()
{
    setViewportMargins(numbersWidth(), 0, 0, 0);
    const QRect inside = contentsRect();
    m_numbers->setGeometry(inside.left(), inside.top(), numbersWidth(), inside.height());
}

void ScriptEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    placeNumbers();
}

void ScriptEdit::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_numbers)
        placeNumbers();
    if (event->type() == QEvent::PaletteChange && m_numbers)
        showState();
}

void ScriptEdit::toggleBreakPoint(int line)
{
    if (info().scriptPath().empty())
        return;
    if (info().isBreakPoints(line))
        info().removeBreakPoint(line);
    else
        info().addBreakPoint(line);
}

void ScriptEdit::showState()
{
    const int line = info().scriptPath().empty() ? 0 : info().stepLine() + 1;
    QList<QTextEdit::ExtraSelection> marked;
    if (const QTextBlock block = document()->findBlockByNumber(line - 1);
        block.isValid() && line <= info().scriptLines()) {
        QTextEdit::ExtraSelection present;
        QColor colour = palette().color(QPalette::Highlight);
        colour.setAlphaF(0.25F);
        present.format.setBackground(colour);
        present.format.setProperty(QTextFormat::FullWidthSelection, true);
        present.cursor = QTextCursor(block);
        marked.append(present);
    }
    setExtraSelections(marked);
    // Lines that came or went before it are no step.
    if (marked.isEmpty())
        m_stood = QTextCursor();
    else if (m_stood.isNull() || m_stood.blockNumber() + 1 != line)
        showLine(line);
    setReadOnly(!ScriptText::get()->editable());
    m_numbers->update();
}

void ScriptEdit::showLine(int line)
{
    m_stood = QTextCursor(document()->findBlockByNumber(line - 1));
    setTextCursor(m_stood);
    ensureCursorVisible();
}

void ScriptEdit::paintNumbers(QPaintEvent* event)
{
    QPainter painter(m_numbers);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    painter.fillRect(event->rect(), palette().color(QPalette::Window));
    const int lines = info().scriptPath().empty() ? 0 : blockCount();
    QTextBlock block = firstVisibleBlock();
    auto top = static_cast<int>(blockBoundingGeometry(block).translated(contentOffset()).top());
    while (block.isValid() && block.blockNumber() < lines && top <= event->rect().bottom()) {
        const auto height = static_cast<int>(blockBoundingRect(block).height());
        const int line = block.blockNumber() + 1;
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(0, top, m_numbers->width() - kMargin / 2, height, Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(line));
        paintMarks(painter, line, QRect(0, top, kMarks, height));
        block = block.next();
        top += height;
    }
}

void ScriptEdit::paintMarks(QPainter& painter, int line, const QRect& room) const
{
    painter.setPen(Qt::NoPen);
    const QPointF middle = QRectF(room).center();
    if (info().isBreakPoints(line)) {
        painter.setBrush(errorColour());
        painter.drawEllipse(middle, 5.5, 5.5);
    }
    if (!info().isStepLine(line) || line > info().scriptLines())
        return;
    // Smaller than the breakpoint that it may lie over.
    painter.setBrush(info().isBreakPoints(line) ? palette().color(QPalette::Base)
                                                : palette().color(QPalette::Highlight));
    const double size = info().isBreakPoints(line) ? 3 : 5;
    painter.drawPolygon(QPolygonF({middle + QPointF(-size * 0.8, -size), middle + QPointF(size, 0),
                                   middle + QPointF(-size * 0.8, size)}));
}

} // namespace Vu
