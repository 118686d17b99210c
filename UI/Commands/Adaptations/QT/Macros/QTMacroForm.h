#pragma once

#include "UI/Commands/Transcripts/MacroForm.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace Vu::Commands {

/// A line for each field. OK requires a value in each required one, and the check to pass.
class QTMacroForm : public QDialog
{
public:
    QTMacroForm(const std::wstring& title, std::vector<MacroForm::Field> fields, MacroForm::Check check,
                QWidget* parent);

    /// The present contents of the lines.
    std::vector<MacroForm::Field> fields() const;

private:
    void refresh();

    std::vector<MacroForm::Field> m_fields;
    MacroForm::Check m_check;
    std::vector<QLineEdit*> m_lines;
    QLabel* m_wrong;
    QPushButton* m_ok;
};

} // namespace Vu::Commands
