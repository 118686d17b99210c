#include "UI/Commands/Adaptations/QT/Validation/QTNormalValidationWidget.h"

#include "UI/Commands/Adaptations/QT/Panels/PanelLayout.h"
#include "UI/Commands/Adaptations/QT/Validation/QTNormalValidationDialog.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Transcripts/TranscriptLines.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace Vu::Commands {
namespace {

constexpr int kDescriptionWidth = 200;
constexpr int kColumns = 2;

/// "ShowEdges" as shown to the user: "Show Edges".
QString spaced(const QString& name)
{
    QString text;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (i > 0 && name[i] >= u'A' && name[i] <= u'Z')
            text += u' ';
        text += name[i];
    }
    return text;
}

/// What a command checks: "Wall Thickness" of "CheckWallThickness".
QString titleOf(const QString& command)
{
    const QString text = spaced(command);
    return text.mid(text.indexOf(u' ') + 1);
}

} // namespace

QTNormalValidationWidget::QTNormalValidationWidget(const ValidationCheck& check)
    : m_subjectArea(check.subjectArea), m_command(check.command)
{
    // The window has many of these and stays beside the work.
    auto* contents = new QVBoxLayout;
    contents->setContentsMargins(0, 0, 0, 0);
    contents->setSpacing(4);
    contents->addLayout(makeDescriptionRow());
    contents->addLayout(makeOptionGrid(check.options));
    putInGroup(this, titleOf(QString::fromStdWString(m_command)), contents);
    adjustSize();
    connect(m_validate, &QPushButton::clicked, this, &QTNormalValidationWidget::onClickValidationButton);
    connect(m_description, &QLineEdit::textChanged, this, &QTNormalValidationWidget::onScriptFileNameChanged);
    QTNormalValidationDialog::get()->addValidationWidget(this);
}

QLayout* QTNormalValidationWidget::makeDescriptionRow()
{
    m_validate = new QPushButton(QString::fromStdWString(localized("Validate", "Validate")));
    m_validate->setEnabled(false);
    m_description = new QLineEdit;
    m_description->setMaximumWidth(kDescriptionWidth);
    m_description->setPlaceholderText(descriptionText());
    auto* row = new QHBoxLayout;
    row->addWidget(m_validate);
    row->addWidget(m_description);
    row->addStretch();
    return row;
}

QLayout* QTNormalValidationWidget::makeOptionGrid(const std::wstring& options)
{
    auto* grid = new QGridLayout;
    grid->setVerticalSpacing(0);
    if (options.empty())
        return grid;
    for (const QString& token : QString::fromStdWString(options).split(u'/')) {
        auto* box = new QCheckBox(spaced(token));
        box->setAccessibleName(token);
        const int index = static_cast<int>(m_options.size());
        grid->addWidget(box, index / kColumns, index % kColumns);
        m_options.push_back(box);
    }
    return grid;
}

void QTNormalValidationWidget::onScriptFileNameChanged(const QString& text)
{
    m_validate->setEnabled(!text.isEmpty());
}

void QTNormalValidationWidget::onClickValidationButton()
{
    std::wstring line = m_subjectArea + L'.' + m_command + L' ' +
                        normalizedDescription(m_description->text().toStdWString()) + L' ';
    for (const QCheckBox* option : m_options)
        if (option->isChecked())
            line += L'/' + option->accessibleName().toStdWString() + L' ';
    insertTranscriptLine(line);
    keepReference(line);
}

} // namespace Vu::Commands
