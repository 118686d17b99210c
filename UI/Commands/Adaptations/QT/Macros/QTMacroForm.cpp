#include "UI/Commands/Adaptations/QT/Macros/QTMacroForm.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Told.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace Vu::Commands {
namespace {

constexpr int kWidth = 300;

} // namespace

QTMacroForm::QTMacroForm(const std::wstring& title, std::vector<MacroForm::Field> fields,
                         MacroForm::Check check, QWidget* parent)
    : QDialog(parent), m_fields(std::move(fields)), m_check(std::move(check)), m_wrong(PlainText::label(this))
{
    setObjectName(QStringLiteral("macroForm"));
    setWindowTitle(QString::fromStdWString(title));
    auto* column = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    column->addLayout(form);
    for (const MacroForm::Field& field : m_fields) {
        const QString name = QString::fromStdWString(field.name);
        auto* line = new QLineEdit(QString::fromStdWString(field.value), this);
        line->setObjectName(name);
        line->setAccessibleName(name);
        line->setMinimumWidth(kWidth);
        line->selectAll();
        QLabel* label = PlainText::label(this);
        label->setText(name);
        label->setBuddy(line);
        form->addRow(label, line);
        m_lines.push_back(line);
        connect(line, &QLineEdit::textChanged, this, [this] { refresh(); });
    }
    m_wrong->setWordWrap(true);
    column->addWidget(m_wrong);
    auto* buttons = new QDialogButtonBox(this);
    m_ok = buttons->addButton(told("MacroOk", "OK"), QDialogButtonBox::AcceptRole);
    buttons->addButton(told("MacroCancel", "Cancel"), QDialogButtonBox::RejectRole);
    m_ok->setDefault(true);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    refresh();
}

std::vector<MacroForm::Field> QTMacroForm::fields() const
{
    std::vector<MacroForm::Field> all = m_fields;
    for (size_t i = 0; i < all.size(); ++i)
        all[i].value = m_lines[i]->text().toStdWString();
    return all;
}

void QTMacroForm::refresh()
{
    const std::vector<MacroForm::Field> given = fields();
    const bool filled = std::all_of(given.begin(), given.end(), [](const MacroForm::Field& field) {
        return !field.isRequired || !field.value.empty();
    });
    const std::wstring wrong = filled && m_check ? m_check(given) : std::wstring();
    m_wrong->setText(QString::fromStdWString(wrong));
    m_wrong->setVisible(!wrong.empty());
    m_ok->setEnabled(filled && wrong.empty());
}

} // namespace Vu::Commands
