#pragma once

#include "UI/Base/Program/Printing.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLineEdit;
class QPrinter;
class QPushButton;
class QTimer;

namespace Vu {

class PagePreview;

/// Asks what is to be printed where, and shows the page. While a drawing is computed, the dialog waits;
/// **Cancel** or Escape then ends that alone.
class PrintDialog : public QDialog
{
public:
    /// The maker must outlive the dialog.
    PrintDialog(const PrintWish& wish, const PageMaker& maker, QWidget* parent);
    ~PrintDialog() override;

    PrintWish wish() const;
    /// Empty for a file.
    QString printerName() const;
    /// Prints on the chosen printer with the options that were chosen for it.
    bool print(Vs::Status& status);

    void accept() override;
    void reject() override;

private:
    void build(const PrintWish& wish);
    void refreshFields();
    void refreshSoon(int pause);
    void refreshPage();
    void askOptions();
    QPrinter& printer();

    const PageMaker& m_maker;
    PagePreview* m_preview;
    QFormLayout* m_form;
    QWidget* m_fields;
    QComboBox* m_what;
    QComboBox* m_printer;
    QPushButton* m_options;
    QComboBox* m_paper;
    QComboBox* m_orientation;
    QDoubleSpinBox* m_margin;
    QLineEdit* m_scale;
    QCheckBox* m_hidden;
    QPushButton* m_print;
    QTimer* m_soon; ///< What is typed is drawn when the typing has paused.
    std::unique_ptr<QPrinter> m_opened;
    bool m_making = false;
};

} // namespace Vu
