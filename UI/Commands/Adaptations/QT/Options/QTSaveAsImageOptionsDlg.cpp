#include "UI/Commands/Adaptations/QT/Options/QTSaveAsImageOptionsDlg.h"

#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Told.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace Vu::Commands {
namespace {

constexpr const char* kSizes[] = {
    "1920 x 1080 (16:9)", "1280 x 720 (16:9)", "1280 x 1024 (4:3)", "1024 x 768 (4:3)", "800 x 600 (4:3)",
    "640 x 480 (4:3)",    "1024 x 1024 (1:1)", "512 x 512 (1:1)",   "256 x 256 (1:1)",
};
constexpr int kLargestResolution = 2400;

// In the group of internal options.
constexpr const char* kWidth = "QTSaveAsImageOptionsDlg_width";
constexpr const char* kHeight = "QTSaveAsImageOptionsDlg_height";
constexpr const char* kSize =
    "QTSaveAsImageOptionsDlg_size"; // An index, which is the same in every language.
constexpr const char* kUnit = "QTSaveAsImageOptionsDlg_unit"; // the same
constexpr const char* kResolution = "QTSaveAsImageOptionsDlg_resolution";
constexpr const char* kLockRatio = "QTSaveAsImageOptionsDlg_lockRatio";
constexpr const char* kTransparent = "QTSaveAsImageOptionsDlg_transparent";
constexpr const char* kAntiAliasing = "QTSaveAsImageOptionsDlg_antiAliasing";

int kept(const char* option, int fallBack)
{
    return UIInternalOptionGroup::get()->value(option, fallBack);
}

QString currentWindowSize()
{
    return told("CurrentDocumentWindowSize", "Current Document Window Size");
}

QString customSize()
{
    return told("CustomSize", "Custom...");
}

QString inches()
{
    return told("Inches", "Inches");
}

template <class Widget, class... Arguments>
Widget* named(const char* name, Arguments&&... arguments)
{
    auto* widget = new Widget(std::forward<Arguments>(arguments)...);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QLabel* namedLabel(const char* name, const QString& text = {})
{
    QLabel* label = PlainText::label(nullptr, text);
    label->setObjectName(QLatin1String(name));
    return label;
}

} // namespace

QTSaveAsImageOptionsDlg::QTSaveAsImageOptionsDlg(ImageOptions* options, QWidget* parent)
    : QDialog(parent),
      m_options(options),
      m_window(*options),
      m_model(*options, options->height > 0 ? double(options->width) / options->height : 1.0)
{
    setObjectName(QStringLiteral("saveAsImageOptions"));
    setWindowTitle(told("CaptureImage", "Save As"));
    build();
    checkBoxTransBgd->setEnabled(!options->transparencyLocked);
    checkBoxTransBgd->setChecked(options->transparentBackground);
    checkBoxEnableAA->setChecked(options->antiAliasing);
    lineEditReso->setText(QString::number(m_model.resolution()));
    lineEditReso->setEnabled(false);
    showNumbers(nullptr);
    connectAll();
    restore();
}

QTSaveAsImageOptionsDlg::~QTSaveAsImageOptionsDlg() = default;

void QTSaveAsImageOptionsDlg::build()
{
    groupBoxTop = named<QGroupBox>("groupBoxTop", told("ImageResolution", "Image Resolution"));
    labelWidth = namedLabel("labelWidth", told("Width", "Width"));
    labelHeight = namedLabel("labelHeight", told("Height", "Height"));
    labelReso = namedLabel("labelReso", told("Resolution", "Resolution"));
    lineEditWidth = named<QLineEdit>("lineEditWidth");
    lineEditHeight = named<QLineEdit>("lineEditHeight");
    lineEditReso = named<QLineEdit>("lineEditReso");
    comboBoxSize = named<QComboBox>("comboBoxSize");
    comboBoxWidthUnit = named<QComboBox>("comboBoxWidthUnit");
    labelWidthOut = namedLabel("labelWidthOut");
    labelHeightOut = namedLabel("labelHeightOut");
    labelResoUnit = namedLabel("labelResoUnit", told("PixelsPerInch", "Pixels/Inch"));
    labelHeightUnit = namedLabel("labelHeightUnit");
    checkBoxLockRatio = named<QCheckBox>("checkBoxLockRatio", told("LockAspectRatio", "Lock Aspect Ratio"));
    checkBoxTransBgd =
        named<QCheckBox>("checkBoxTransBgd", told("TransparentBackground", "Transparent Background"));
    checkBoxEnableAA =
        named<QCheckBox>("checkBoxEnableAA", told("EnableAntiAliasing", "Enable Anti-aliasing"));
    buttonBox = named<QDialogButtonBox>("buttonBox", QDialogButtonBox::Ok | QDialogButtonBox::Cancel);

    comboBoxSize->addItem(currentWindowSize());
    comboBoxSize->addItem(customSize());
    for (const char* size : kSizes)
        comboBoxSize->addItem(QLatin1String(size));
    comboBoxWidthUnit->addItems({told("Pixels", "Pixels"), inches()});
    labelHeightUnit->setText(comboBoxWidthUnit->currentText());
    for (QLineEdit* edit : {lineEditWidth, lineEditHeight})
        edit->setValidator(new QIntValidator(1, int(kLargestImage), edit));
    lineEditReso->setValidator(new QIntValidator(0, kLargestResolution, lineEditReso));

    auto* grid = new QGridLayout(groupBoxTop);
    grid->addWidget(comboBoxSize, 0, 0, 1, 3);
    grid->addWidget(labelWidth, 1, 0);
    grid->addWidget(lineEditWidth, 1, 1);
    grid->addWidget(comboBoxWidthUnit, 1, 2);
    grid->addWidget(labelHeight, 2, 0);
    grid->addWidget(lineEditHeight, 2, 1);
    grid->addWidget(labelHeightUnit, 2, 2);
    grid->addWidget(labelReso, 3, 0);
    grid->addWidget(lineEditReso, 3, 1);
    grid->addWidget(labelResoUnit, 3, 2);
    grid->addWidget(labelWidthOut, 4, 0, 1, 2);
    grid->addWidget(labelHeightOut, 4, 2);
    grid->addWidget(checkBoxLockRatio, 5, 0, 1, 3);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(groupBoxTop);
    layout->addWidget(checkBoxTransBgd);
    layout->addWidget(checkBoxEnableAA);
    layout->addStretch();
    layout->addWidget(buttonBox);
}

void QTSaveAsImageOptionsDlg::connectAll()
{
    connect(checkBoxLockRatio, &QCheckBox::stateChanged, this, &QTSaveAsImageOptionsDlg::lockRatioCheck);
    connect(checkBoxEnableAA, &QCheckBox::stateChanged, this, &QTSaveAsImageOptionsDlg::antialiasCheck);
    connect(checkBoxTransBgd, &QCheckBox::stateChanged, this, &QTSaveAsImageOptionsDlg::transBackgroundCheck);
    connect(comboBoxSize, &QComboBox::currentTextChanged, this, &QTSaveAsImageOptionsDlg::sizeIndexChanged);
    connect(comboBoxWidthUnit, &QComboBox::currentTextChanged, this,
            &QTSaveAsImageOptionsDlg::unitIndexChanged);
    connect(lineEditWidth, &QLineEdit::textEdited, this, &QTSaveAsImageOptionsDlg::widthEdited);
    connect(lineEditHeight, &QLineEdit::textEdited, this, &QTSaveAsImageOptionsDlg::heightEdited);
    connect(lineEditReso, &QLineEdit::textEdited, this, &QTSaveAsImageOptionsDlg::resoEdited);
    connect(buttonBox, &QDialogButtonBox::accepted, this, &QTSaveAsImageOptionsDlg::accept);
    connect(buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void QTSaveAsImageOptionsDlg::accept()
{
    for (QLineEdit* edit : {lineEditWidth, lineEditHeight})
        if (!edit->hasAcceptableInput()) {
            edit->setFocus();
            edit->selectAll();
            return;
        }
    keep();
    QDialog::accept();
}

void QTSaveAsImageOptionsDlg::restore()
{
    m_model.resolutionEdited(kept(kResolution, m_model.resolution()));
    lineEditReso->setText(QString::number(m_model.resolution()));
    comboBoxWidthUnit->setCurrentIndex(std::clamp(kept(kUnit, 0), 0, comboBoxWidthUnit->count() - 1));
    const int size = std::clamp(kept(kSize, 0), 0, comboBoxSize->count() - 1);
    comboBoxSize->setCurrentIndex(size);
    if (comboBoxSize->itemText(size) == customSize())
        m_model.size(static_cast<uint32_t>(std::max(kept(kWidth, int(m_window.width)), 1)),
                     static_cast<uint32_t>(std::max(kept(kHeight, int(m_window.height)), 1)));
    checkBoxLockRatio->setChecked(kept(kLockRatio, 0) != 0);
    // What the command was already given is kept.
    if (!m_options->transparencyLocked && kept(kTransparent, 0) != 0)
        checkBoxTransBgd->setChecked(true);
    if (kept(kAntiAliasing, 1) == 0)
        checkBoxEnableAA->setChecked(false);
    showNumbers(nullptr);
}

void QTSaveAsImageOptionsDlg::keep() const
{
    UIInternalOptionGroup* group = UIInternalOptionGroup::get();
    group->setValue(kWidth, int(m_options->width));
    group->setValue(kHeight, int(m_options->height));
    group->setValue(kSize, comboBoxSize->currentIndex());
    group->setValue(kUnit, comboBoxWidthUnit->currentIndex());
    group->setValue(kResolution, m_model.resolution());
    group->setValue(kLockRatio, int(checkBoxLockRatio->isChecked()));
    if (!m_options->transparencyLocked)
        group->setValue(kTransparent, int(checkBoxTransBgd->isChecked()));
    group->setValue(kAntiAliasing, int(checkBoxEnableAA->isChecked()));
}

void QTSaveAsImageOptionsDlg::lockRatioCheck(int state)
{
    m_model.ratioLocked(state == Qt::Checked);
    showNumbers(nullptr);
}

void QTSaveAsImageOptionsDlg::antialiasCheck(int state)
{
    m_options->antiAliasing = state == Qt::Checked;
}

void QTSaveAsImageOptionsDlg::transBackgroundCheck(int state)
{
    m_options->transparentBackground = state == Qt::Checked;
}

void QTSaveAsImageOptionsDlg::sizeIndexChanged(const QString& entry)
{
    if (entry == currentWindowSize())
        m_model.size(m_window.width, m_window.height);
    else if (const auto size = sizeOfEntry(entry.toStdWString())) {
        // An entry sets both numbers, which the window's aspect must not change.
        checkBoxLockRatio->setChecked(false);
        m_model.size(size->first, size->second);
    }
    showNumbers(nullptr);
}

void QTSaveAsImageOptionsDlg::unitIndexChanged(const QString& entry)
{
    const bool inInches = entry == inches();
    m_model.unit(inInches ? ImageSizeModel::Unit::Inches : ImageSizeModel::Unit::Pixels);
    lineEditReso->setEnabled(inInches);
    labelHeightUnit->setText(entry);
    showNumbers(nullptr);
}

void QTSaveAsImageOptionsDlg::widthEdited(const QString& text)
{
    m_model.widthEdited(text.toUInt());
    showCustomSize();
    showNumbers(lineEditWidth);
}

void QTSaveAsImageOptionsDlg::heightEdited(const QString& text)
{
    m_model.heightEdited(text.toUInt());
    showCustomSize();
    showNumbers(lineEditHeight);
}

void QTSaveAsImageOptionsDlg::resoEdited(const QString& text)
{
    m_model.resolutionEdited(text.toInt());
    showNumbers(lineEditReso);
}

void QTSaveAsImageOptionsDlg::showCustomSize()
{
    const QSignalBlocker quiet(comboBoxSize);
    comboBoxSize->setCurrentText(customSize());
}

// The field that the user is typing in is left alone.
void QTSaveAsImageOptionsDlg::showNumbers(const QLineEdit* edited)
{
    if (edited != lineEditWidth)
        lineEditWidth->setText(QString::number(m_model.shownWidth()));
    if (edited != lineEditHeight)
        lineEditHeight->setText(QString::number(m_model.shownHeight()));
    labelWidthOut->setText(QStringLiteral("    W: %1").arg(m_options->width));
    labelHeightOut->setText(QStringLiteral("     H: %1").arg(m_options->height));
}

namespace {

const bool registered = [] {
    imageOptionsAsker([](ImageOptions& options) {
        return QTSaveAsImageOptionsDlg(&options, Application::get()->mainWidget()).exec() ==
               QDialog::Accepted;
    });
    return true;
}();

} // namespace
} // namespace Vu::Commands
