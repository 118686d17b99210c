#pragma once

#include "UI/Commands/Adaptations/QT/Validation/ValidationWindowBase.h"

#include <vector>

class QVBoxLayout;

namespace Vu::Commands {

/// Shown while a transcript is recorded: comments, and the checks that add-ins have registered
/// (NormalValidationWidget).
class QTNormalValidationDialog : public ValidationWindowBase
{
    Q_OBJECT

public:
    static QTNormalValidationDialog* get();

    /// Takes ownership of the widget; null is ignored.
    void addValidationWidget(QWidget* widget);

private:
    friend class ValidationWindowBase;
    QTNormalValidationDialog();

    static const bool s_served;

    std::vector<QWidget*> m_widgets;
    QVBoxLayout* m_layout;
};

} // namespace Vu::Commands
