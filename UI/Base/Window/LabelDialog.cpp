#include "UI/Base/Window/LabelDialog.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Told.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace Vu {
namespace {

constexpr int kWidth = 380;

} // namespace

LabelDialog::LabelDialog(const QString& proposal, int longest, QWidget* parent)
    : QDialog(parent), m_label(new QLineEdit(proposal, this))
{
    setObjectName(QStringLiteral("labelDialog"));
    setWindowTitle(told("LabelTitle", "Mark a Version"));
    auto* column = new QVBoxLayout(this);
    QLabel* what = PlainText::label(
        this,
        told("LabelWhat",
             "What should this version be called? The label appears in the list of the item's versions."));
    what->setWordWrap(true);
    what->setBuddy(m_label);
    m_label->setObjectName(QStringLiteral("label"));
    m_label->setAccessibleName(told("LabelName", "Label"));
    m_label->setMaxLength(longest);
    m_label->setMinimumWidth(kWidth);
    m_label->selectAll();
    auto* buttons = new QDialogButtonBox(this);
    m_mark = buttons->addButton(told("LabelMark", "Save Version"), QDialogButtonBox::AcceptRole);
    buttons->addButton(told("LabelCancel", "Cancel"), QDialogButtonBox::RejectRole);
    m_mark->setDefault(true);
    column->addWidget(what);
    column->addWidget(m_label);
    column->addWidget(buttons);
    connect(m_label, &QLineEdit::textChanged, this, [this] { refresh(); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    refresh();
}

QString LabelDialog::label() const
{
    return m_label->text().simplified();
}

void LabelDialog::refresh()
{
    m_mark->setEnabled(!label().isEmpty());
}

} // namespace Vu
