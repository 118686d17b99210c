#include "UI/Base/Window/InputForm.h"

#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/GroupCommandInput.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Window/InputField.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

namespace Vu {
namespace {

/// How far the contents of a group are indented.
constexpr int kIndent = 10;

int depthOf(const CommandInputBase& input)
{
    int depth = 0;
    for (const GroupCommandInput* group = input.group(); group; group = group->group())
        ++depth;
    return depth;
}

bool isFolded(const CommandInputBase& input)
{
    for (const GroupCommandInput* group = input.group(); group; group = group->group())
        if (!group->value())
            return true;
    return false;
}

} // namespace

InputForm::InputForm(const CommandInputSet& inputs, QWidget* parent)
    : QWidget(parent), m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(2 * kMargin, kMargin, kMargin, kMargin);
    m_grid->setHorizontalSpacing(2 * kMargin);
    m_grid->setVerticalSpacing(kMargin);
    m_grid->setColumnStretch(1, 1);
    for (const auto& input : inputs.inputs()) {
        if (auto* group = Vs::cast<GroupCommandInput>(input.get()))
            addHeading(group);
        else
            addRow(input.get());
    }
    m_grid->setRowStretch(m_grid->rowCount(), 1);
    refresh();
}

void InputForm::addRow(CommandInputBase* input)
{
    const int row = m_grid->rowCount();
    InputField* field = InputField::make(input, this);
    QLabel* title = nullptr;
    if (field->hasOwnTitle()) {
        m_grid->addWidget(field, row, 0, 1, 2);
        field->setContentsMargins(depthOf(*input) * kIndent, 0, 0, 0);
    } else {
        title = PlainText::label(this, QString::fromStdWString(input->info()->name()));
        title->setContentsMargins(depthOf(*input) * kIndent, 0, 0, 0);
        m_grid->addWidget(title, row, 0);
        m_grid->addWidget(field, row, 1);
    }
    m_rows.push_back({field, title});
}

void InputForm::addHeading(GroupCommandInput* group)
{
    auto* button = new QToolButton(this);
    button->setObjectName(QStringLiteral("inputGroup"));
    button->setText(QString::fromStdWString(group->info()->name()));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setCheckable(true);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(button, &QToolButton::clicked, this, [this, button](bool open) {
        for (const Heading& heading : m_headings)
            if (heading.button == button)
                heading.group->value(open);
    });
    m_grid->addWidget(button, m_grid->rowCount(), 0, 1, 2);
    m_headings.push_back({group, button});
}

void InputForm::forget()
{
    for (const Row& row : m_rows)
        row.field->forget();
    m_headings.clear();
}

void InputForm::refresh()
{
    for (const Heading& heading : m_headings) {
        const bool open = heading.group->value();
        heading.button->setChecked(open);
        heading.button->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
        heading.button->setVisible(heading.group->isShown() && !isFolded(*heading.group));
        heading.button->setEnabled(heading.group->isUsable());
    }
    for (const Row& row : m_rows) {
        const CommandInputBase* input = row.field->input();
        if (!input)
            continue;
        const bool shown = input->isShown() && !isFolded(*input);
        row.field->refresh();
        row.field->setVisible(shown);
        if (row.title) {
            row.title->setVisible(shown);
            row.title->setEnabled(input->isUsable());
        }
    }
}

void InputForm::enter()
{
    // A value may end the command; the fields then know it.
    for (const Row& row : m_rows)
        row.field->enter();
}

InputField* InputForm::firstField(bool invalid) const
{
    for (const Row& row : m_rows) {
        const CommandInputBase* input = row.field->input();
        if (input && row.field->isVisibleTo(this) && row.field->isEnabled() && !(invalid && input->valid()))
            return row.field;
    }
    return nullptr;
}

InputField* InputForm::pickingField() const
{
    for (const Row& row : m_rows)
        if (const auto* things = Vs::cast<SelectionCommandInput>(row.field->input());
            things && things->isCurrent())
            return row.field;
    return nullptr;
}

} // namespace Vu
