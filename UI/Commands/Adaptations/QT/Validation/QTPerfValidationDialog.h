#pragma once

#include "UI/Commands/Adaptations/QT/Validation/ValidationWindowBase.h"

namespace Vu::Commands {

class QTPerfValidationWidget;

/// Shown while a performance transcript is recorded: comments, and metrics.
class QTPerfValidationDialog : public ValidationWindowBase
{
    Q_OBJECT

public:
    static QTPerfValidationDialog* get();

    void finishStartedMetrics() override;

private:
    friend class ValidationWindowBase;
    QTPerfValidationDialog();

    static const bool s_served;

    QTPerfValidationWidget* m_metrics;
};

} // namespace Vu::Commands
