#include "UI/Base/Window/PlainText.h"

#include <QAction>
#include <QLabel>
#include <QMessageBox>
#include <QTextDocument>

namespace Vu {

QString PlainText::tooltip(const QString& text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

QString PlainText::tooltip(const std::wstring& text)
{
    return tooltip(QString::fromStdWString(text));
}

void PlainText::setTooltip(QWidget* widget, const QString& text)
{
    widget->setToolTip(tooltip(text));
}

void PlainText::setTooltip(QAction* action, const QString& text)
{
    action->setToolTip(tooltip(text));
}

void PlainText::setMarkupTooltip(QWidget* widget, const QString& html)
{
    widget->setToolTip(html);
}

QLabel* PlainText::label(QWidget* parent, const QString& text)
{
    auto* made = new QLabel(parent);
    made->setTextFormat(Qt::PlainText);
    made->setText(text);
    return made;
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
