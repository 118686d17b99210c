#include "UI/Commands/Adaptations/QT/Cloud/CloudName.h"

#include "UI/Base/Program/FileDialog.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"

#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QLineEdit>

namespace Vu::Commands {

using CloudTexts::text;

CloudName::CloudName(const CloudDialog::Request& request, const QString& name, Actions actions,
                     QWidget* parent)
    : QWidget(parent),
      m_actions(std::move(actions)),
      m_name(new QLineEdit(name, this)),
      m_kinds(new QComboBox(this))
{
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_name->setObjectName(QStringLiteral("cloudName"));
    m_kinds->setObjectName(QStringLiteral("cloudFilter"));
    // A long list of suffixes must not widen the dialog.
    m_kinds->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    form->addRow(text("CloudName", "Name"), m_name);
    form->addRow(text("CloudKinds", "Files"), m_kinds);
    fillKinds(request);
    const bool isSaveAs = request.kind == CloudDialog::Kind::SaveAs;
    form->setRowVisible(m_name, isSaveAs);
    setVisible(isSaveAs || m_kinds->count() > 0);
    m_name->installEventFilter(this);
    connect(m_name, &QLineEdit::textChanged, this, m_actions.change);
    connect(m_kinds, &QComboBox::currentIndexChanged, this, [this] { m_actions.kinds(kinds()); });
}

void CloudName::fillKinds(const CloudDialog::Request& request)
{
    const QString filter = QString::fromStdWString(FileDialogRules::dialogFilter(request.filter));
    for (const QString& entry : filter.split(QStringLiteral(";;"), Qt::SkipEmptyParts))
        m_kinds->addItem(entry);
    if (request.kind == CloudDialog::Kind::SaveAs)
        m_kinds->addItem(text("CloudAllFiles", "All files (*)"));
}

QString CloudName::name() const
{
    return m_name->text().trimmed();
}

void CloudName::name(const QString& name)
{
    m_name->setText(name);
}

void CloudName::goToName()
{
    m_name->setFocus();
}

QStringList CloudName::kinds() const
{
    const QString entry = m_kinds->currentText();
    const qsizetype open = entry.lastIndexOf(QLatin1Char('(')), end = entry.lastIndexOf(QLatin1Char(')'));
    return open < 0 || end < open
               ? QStringList()
               : entry.mid(open + 1, end - open - 1).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

void CloudName::enableKinds(bool value)
{
    m_kinds->setEnabled(value);
}

bool CloudName::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_name && event->type() == QEvent::FocusIn)
        m_actions.begin();
    return QWidget::eventFilter(watched, event);
}

} // namespace Vu::Commands
