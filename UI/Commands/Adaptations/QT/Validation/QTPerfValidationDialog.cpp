#include "UI/Commands/Adaptations/QT/Validation/QTPerfValidationDialog.h"

#include "UI/Commands/Adaptations/QT/Validation/QTInsertScriptWidget.h"
#include "UI/Commands/Adaptations/QT/Validation/QTPerfValidationWidget.h"
#include "UI/Commands/Localized.h"

#include <QVBoxLayout>

namespace Vu::Commands {

QTPerfValidationDialog* QTPerfValidationDialog::get()
{
    return theOne<QTPerfValidationDialog>();
}

QTPerfValidationDialog::QTPerfValidationDialog() : m_metrics(new QTPerfValidationWidget)
{
    setObjectName(QStringLiteral("performanceValidation"));
    setWindowTitle(QString::fromStdWString(localized("PerformanceValidation", "Performance Validation")));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QTInsertScriptWidget);
    layout->addWidget(m_metrics);
}

void QTPerfValidationDialog::finishStartedMetrics()
{
    m_metrics->finishStartedMetrics();
}

const bool QTPerfValidationDialog::s_served = serve<QTPerfValidationDialog>(ValidationDialog::kPerformance);

} // namespace Vu::Commands
