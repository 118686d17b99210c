#include "UI/Base/Window/PlainText.h"

#include <QAction>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTextBoundaryFinder>
#include <QTextDocument>

#include <algorithm>

namespace Vu {
namespace {
/// The description derived from the tooltip.
constexpr const char* kDescribed = "describedByTooltip";
} // namespace

QString PlainText::tooltip(const QString& text)
{
    // A name may have thousands of letters, which would cover the screen.
    constexpr qsizetype kMost = 500;
    const QString shown = text.size() > kMost ? text.left(kMost) + QChar(0x2026) : text;
    return Qt::mightBeRichText(shown) ? Qt::convertFromPlainText(shown, Qt::WhiteSpaceNormal) : shown;
}

QString PlainText::tooltip(const std::wstring& text)
{
    return tooltip(QString::fromStdWString(text));
}

// If nothing else describes a widget, screen readers read its tooltip, including any markup.
void PlainText::setTooltip(QWidget* widget, const QString& text)
{
    const bool describes = widget->accessibleDescription() == widget->property(kDescribed).toString();
    const QString shown = tooltip(text);
    widget->setToolTip(shown);
    if (!describes)
        return;
    const QString spoken = shown == text ? QString() : text;
    widget->setProperty(kDescribed, spoken);
    widget->setAccessibleDescription(spoken);
}

void PlainText::setTooltip(QAction* action, const QString& text)
{
    action->setToolTip(tooltip(text));
}

void PlainText::setMarkupTooltip(QWidget* widget, const QString& html, const QString& spoken)
{
    widget->setToolTip(html);
    widget->setAccessibleDescription(spoken);
}

QLabel* PlainText::label(QWidget* parent, const QString& text)
{
    auto* made = new QLabel(parent);
    made->setTextFormat(Qt::PlainText);
    made->setText(text);
    return made;
}

QString PlainText::breakable(const QString& text)
{
    // Longer than the words of languages that write compounds as one.
    constexpr qsizetype kLongWord = 24;
    constexpr qsizetype kPiece = 16;
    constexpr QChar kChance(0x200b);
    QString shown;
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
    qsizetype wordEnd = -1;
    qsizetype together = 0;
    bool isLong = false;
    for (qsizetype at = 0; at < text.size();) {
        if (at > wordEnd) {
            static const QRegularExpression blank(QStringLiteral("\\s"));
            wordEnd = text.indexOf(blank, at);
            wordEnd = wordEnd < 0 ? text.size() : wordEnd;
            isLong = wordEnd - at > kLongWord;
            together = 0;
        }
        const qsizetype next = std::max(letters.toNextBoundary(), at + 1);
        shown += QStringView(text).mid(at, next - at);
        if (isLong && (QStringView(u"/\\;,._-").contains(text[at]) || ++together == kPiece)) {
            shown += kChance;
            together = 0;
        }
        at = next;
    }
    return shown;
}

std::unique_ptr<QMessageBox> PlainText::messageBox(QWidget* parent, const QString& title, const QString& text)
{
    auto box =
        std::make_unique<QMessageBox>(QMessageBox::NoIcon, title, QString(), QMessageBox::NoButton, parent);
    box->setTextFormat(Qt::PlainText);
    box->setText(text);
    return box;
}

void PlainText::setDetails(QMessageBox* box, const QString& text)
{
    box->setDetailedText(text);
}

bool PlainText::confirmed(QWidget* parent, const QString& title, const QString& question)
{
    const std::unique_ptr<QMessageBox> box = messageBox(parent, title, question);
    box->setIcon(QMessageBox::Warning);
    box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(QMessageBox::No);
    return box->exec() == QMessageBox::Yes;
}

} // namespace Vu
