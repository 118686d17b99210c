#include "UI/Base/Window/CommandAnswers.h"

#include "Server/Base/PythonManager.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace Vu {
namespace {

constexpr int kOutputHeight = 140;
/// A script that prints endlessly must not use up all memory.
constexpr int kMostLines = 10000;
constexpr qsizetype kBetweenColumns = 2;

/// Cells between tabs as columns of a fixed font: at the stops of tabs, long ones would run into the next.
QString inColumns(const QString& text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    std::vector<qsizetype> widths;
    for (const QString& line : lines) {
        const QStringList cells = line.split(QLatin1Char('\t'));
        widths.resize(std::max(widths.size(), static_cast<size_t>(cells.size())));
        for (qsizetype i = 0; i + 1 < cells.size(); ++i)
            widths[static_cast<size_t>(i)] = std::max(widths[static_cast<size_t>(i)], cells[i].size());
    }
    for (QString& line : lines) {
        QStringList cells = line.split(QLatin1Char('\t'));
        for (qsizetype i = 0; i + 1 < cells.size(); ++i)
            cells[i] = cells[i].leftJustified(widths[static_cast<size_t>(i)] + kBetweenColumns);
        line = cells.join(QString());
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

CommandAnswers::CommandAnswers(QLineEdit* line)
    : QFrame(line->window()),
      m_line(line),
      m_answer(PlainText::label(this)),
      m_output(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("commandAnswer"));
    setAutoFillBackground(true);
    hide();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kMargin, kMargin / 2, kMargin, kMargin / 2);
    column->addWidget(m_output);
    column->addWidget(m_answer);

    m_answer->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_answer->setWordWrap(true);
    m_answer->hide();
    m_output->setObjectName(QStringLiteral("commandOutput"));
    m_output->setAccessibleName(QString::fromStdWString(localized("CommandLineAnswer", "Answer")));
    m_output->setReadOnly(true);
    m_output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_output->setFixedHeight(kOutputHeight);
    m_output->setMaximumBlockCount(kMostLines);
    m_output->hide();

    Vs::PythonManager::get()->display(this);
}

CommandAnswers::~CommandAnswers()
{
    if (Vs::PythonManager::get()->display() == this)
        Vs::PythonManager::get()->display(nullptr);
}

bool CommandAnswers::saysNothing() const
{
    return m_answer->isHidden() && m_output->isHidden();
}

void CommandAnswers::place()
{
    const bool any = m_line->isVisible() && !saysNothing();
    if (any) {
        QWidget* const window = m_line->window();
        if (parentWidget() != window)
            setParent(window);
        const QPoint corner = m_line->mapTo(window, QPoint());
        const int wanted = std::max(layout()->heightForWidth(m_line->width()), sizeHint().height());
        setGeometry(corner.x(), std::max(0, corner.y() - wanted - kMargin), m_line->width(), wanted);
        raise();
    }
    setVisible(any);
}

void CommandAnswers::tell(const QString& answer, bool failed)
{
    const QString text = inColumns(answer);
    const bool longText = !failed && text.contains(QLatin1Char('\n'));
    QPalette colours = palette();
    if (failed)
        colours.setColor(QPalette::WindowText, errorColour());
    m_answer->setPalette(colours);
    m_answer->setText(longText ? QString() : text);
    m_answer->setVisible(!longText && !text.isEmpty());
    if (m_printed) {
        if (longText)
            message(text.toStdWString());
    } else {
        m_output->setPlainText(longText ? text : QString());
        fitOutput();
        m_output->setVisible(longText);
    }
    place();
}

void CommandAnswers::hideAnswer()
{
    m_answer->hide();
    place();
}

void CommandAnswers::hideAll()
{
    m_answer->hide();
    m_output->hide();
    place();
}

void CommandAnswers::clearOutput()
{
    m_output->clear();
    hideAll();
}

void CommandAnswers::message(const std::wstring& text)
{
    print(QString::fromStdWString(text), palette().color(QPalette::Text));
}

void CommandAnswers::error(const std::wstring& text)
{
    print(QString::fromStdWString(text), errorColour());
}

void CommandAnswers::print(const QString& text, const QColor& colour)
{
    m_printed = true;
    QTextCharFormat format;
    format.setForeground(colour);
    const bool first = m_output->document()->isEmpty();
    QTextCursor end(m_output->document());
    end.movePosition(QTextCursor::End);
    end.insertText((first ? QString() : QStringLiteral("\n")) + text, format);
    fitOutput();
    m_output->show();
    place();
    m_output->verticalScrollBar()->setValue(m_output->verticalScrollBar()->maximum());
}

void CommandAnswers::fitOutput()
{
    const int lines = m_output->blockCount() + 1;
    m_output->setFixedHeight(
        std::min(kOutputHeight, lines * m_output->fontMetrics().lineSpacing() + kMargin));
}

} // namespace Vu
