#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace Vu {

/// Asks for the label of a version, in one line.
class LabelDialog : public QDialog
{
public:
    LabelDialog(const QString& proposal, int longest, QWidget* parent);

    /// Trimmed; not empty if the dialog was accepted.
    QString label() const;

private:
    void refresh();

    QLineEdit* m_label;
    QPushButton* m_mark;
};

} // namespace Vu
