#pragma once

#include "UI/Commands/Documents/ImageOptions.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace Vu::Commands {

/// Asks for the size, background and anti-aliasing of a captured image, starting from the last choice. The
/// computations are in ImageSizeModel.
class QTSaveAsImageOptionsDlg : public QDialog
{
    Q_OBJECT

public:
    /// Fills `options`, which comes with the size of the current window and must outlive the dialog.
    QTSaveAsImageOptionsDlg(ImageOptions* options, QWidget* parent);
    ~QTSaveAsImageOptionsDlg() override;

    void accept() override;

private slots:
    void lockRatioCheck(int state);
    void antialiasCheck(int state);
    void transBackgroundCheck(int state);
    void sizeIndexChanged(const QString& entry);
    void unitIndexChanged(const QString& entry);
    void widthEdited(const QString& text);
    void heightEdited(const QString& text);
    void resoEdited(const QString& text);

private:
    void build();
    void connectAll();
    /// Loads the last choice, and stores the present one.
    void restore();
    void keep() const;
    void showCustomSize();
    void showNumbers(const QLineEdit* edited);

    ImageOptions* m_options;
    ImageOptions m_window; ///< The record as passed in: the size of the current window.
    ImageSizeModel m_model;

    QGroupBox* groupBoxTop;
    QLabel* labelWidth;
    QLabel* labelHeight;
    QLabel* labelReso;
    QLineEdit* lineEditWidth;
    QLineEdit* lineEditHeight;
    QLineEdit* lineEditReso;
    QComboBox* comboBoxSize;
    QComboBox* comboBoxWidthUnit;
    QLabel* labelWidthOut;
    QLabel* labelHeightOut;
    QLabel* labelResoUnit;
    QLabel* labelHeightUnit;
    QCheckBox* checkBoxLockRatio;
    QCheckBox* checkBoxTransBgd;
    QCheckBox* checkBoxEnableAA;
    QDialogButtonBox* buttonBox;
};

} // namespace Vu::Commands
