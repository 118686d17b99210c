#pragma once

#include "UI/Commands/Transcripts/ValidationChecks.h"

#include <QWidget>

#include <vector>

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace Vu::Commands {

/// The controls of one check: a description, boxes for its options, and a button that writes its line.
class QTNormalValidationWidget : public QWidget
{
    Q_OBJECT

public:
    /// Registers itself with QTNormalValidationDialog, which owns it from then on.
    explicit QTNormalValidationWidget(const ValidationCheck& check);

private slots:
    void onClickValidationButton();
    void onScriptFileNameChanged(const QString& text);

private:
    QLayout* makeDescriptionRow();
    QLayout* makeOptionGrid(const std::wstring& options);

    std::wstring m_subjectArea;
    std::wstring m_command;
    QPushButton* m_validate;
    QLineEdit* m_description;
    std::vector<QCheckBox*> m_options;
};

} // namespace Vu::Commands
