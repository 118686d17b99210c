#include "UI/Commands/Adaptations/QT/Validation/QTNormalValidationDialog.h"

#include "UI/Commands/Adaptations/QT/Validation/QTInsertScriptWidget.h"
#include "UI/Commands/Adaptations/QT/Validation/QTNormalValidationWidget.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Transcripts/ValidationChecks.h"

#include <QVBoxLayout>

#include <algorithm>

namespace Vu::Commands {

QTNormalValidationDialog* QTNormalValidationDialog::get()
{
    bool isNew = false;
    auto* const dialog = theOne<QTNormalValidationDialog>(&isNew);
    if (isNew)
        takeValidationChecks([](const ValidationCheck& check) { new QTNormalValidationWidget(check); });
    return dialog;
}

QTNormalValidationDialog::QTNormalValidationDialog()
{
    setObjectName(QStringLiteral("normalValidation"));
    setWindowTitle(QString::fromStdWString(localized("NormalValidation", "Normal Validation")));
    m_layout = new QVBoxLayout(this);
    m_layout->setSpacing(4);
    m_layout->addWidget(new QTInsertScriptWidget);
}

void QTNormalValidationDialog::addValidationWidget(QWidget* widget)
{
    if (!widget)
        return;
    if (std::find(m_widgets.begin(), m_widgets.end(), widget) == m_widgets.end())
        m_widgets.push_back(widget);
    m_layout->addWidget(widget);
    adjustSize();
}

const bool QTNormalValidationDialog::s_served = serve<QTNormalValidationDialog>(ValidationDialog::kNormal);

} // namespace Vu::Commands
