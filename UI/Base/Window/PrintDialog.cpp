#include "UI/Base/Window/PrintDialog.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Status.h"
#include "UI/Base/Window/PagePreview.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Printers.h"
#include "UI/Base/Window/Told.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QTimer>

namespace Vu {

namespace {
constexpr int kTypingPause = 400; // Milliseconds.
constexpr int kPreviewDotsPerInch = 80;
constexpr int kNoteWidth = 260;
} // namespace

PrintDialog::PrintDialog(const PrintWish& wish, const PageMaker& maker, QWidget* parent)
    : QDialog(parent), m_maker(maker), m_soon(new QTimer(this))
{
    setObjectName(QStringLiteral("printDialog"));
    setWindowTitle(told("PrintTitle", "Print"));
    build(wish);
    m_soon->setSingleShot(true);
    connect(m_soon, &QTimer::timeout, this, [this] { refreshPage(); });
    const auto changed = [this] {
        refreshFields();
        refreshSoon(0);
    };
    for (QComboBox* list : {m_what, m_printer, m_paper, m_orientation})
        connect(list, &QComboBox::currentIndexChanged, this, changed);
    connect(m_hidden, &QCheckBox::toggled, this, changed);
    connect(m_margin, &QDoubleSpinBox::valueChanged, this, [this] { refreshSoon(kTypingPause); });
    connect(m_scale, &QLineEdit::textEdited, this, [this] { refreshSoon(kTypingPause); });
    connect(m_options, &QPushButton::clicked, this, [this] { askOptions(); });
    refreshFields();
    refreshSoon(0);
}

PrintDialog::~PrintDialog() = default;

void PrintDialog::build(const PrintWish& wish)
{
    m_preview = new PagePreview(this);
    m_preview->setObjectName(QStringLiteral("printPreview"));
    m_preview->setAccessibleName(told("PrintPreview", "Preview"));
    m_fields = new QWidget(this);
    m_form = new QFormLayout(m_fields);
    m_form->setContentsMargins(0, 0, 0, 0);
    const auto list = [&](const char* name, const QString& label) {
        auto* made = new QComboBox(m_fields);
        made->setObjectName(QLatin1String(name));
        m_form->addRow(label, made);
        return made;
    };
    m_what = list("printWhat", told("PrintWhat", "&What"));
    m_what->addItems({told("PrintView", "The view as shown"), told("PrintModel", "The model alone"),
                      told("PrintDrawing", "A line drawing at scale")});
    m_what->setCurrentIndex(int(wish.what));
    m_printer = list("printPrinter", told("PrintPrinter", "P&rinter"));
    for (const std::wstring& name : printers())
        m_printer->addItem(QString::fromStdWString(name), QString::fromStdWString(name));
    const bool none = m_printer->count() == 0;
    m_printer->addItem(told("PrintToFile", "PDF file"), QString());
    m_options = new QPushButton(told("PrintOptions", "Printer &Options..."), m_fields);
    m_options->setObjectName(QStringLiteral("printOptions"));
    m_options->setAutoDefault(false);
    m_form->addRow(QString(), m_options);
    if (none) {
        QLabel* note = PlainText::label(
            m_fields,
            told("PrintNoPrinter", "No printer is set up on this system. The page can be written to a "
                                   "PDF file, which any program prints."));
        note->setObjectName(QStringLiteral("printNote"));
        note->setWordWrap(true);
        note->setMaximumWidth(kNoteWidth);
        m_form->addRow(note);
    }
    m_paper = list("printPaper", told("PrintPaper", "P&aper"));
    for (const Paper& paper : papers())
        m_paper->addItem(QString::fromWCharArray(paper.name));
    m_paper->setCurrentText(QString::fromStdWString(wish.paper));
    m_orientation = list("printOrientation", told("PrintOrientation", "Orien&tation"));
    m_orientation->addItems({told("PrintLandscape", "Landscape"), told("PrintPortrait", "Portrait")});
    m_orientation->setCurrentIndex(wish.portrait ? 1 : 0);
    m_margin = new QDoubleSpinBox(m_fields);
    m_margin->setObjectName(QStringLiteral("printMargin"));
    m_margin->setRange(0, kWidestPrintMargin);
    m_margin->setDecimals(1);
    m_margin->setSuffix(QStringLiteral(" mm"));
    m_margin->setValue(wish.margin);
    m_form->addRow(told("PrintMargin", "&Margins"), m_margin);
    m_scale = new QLineEdit(QString::fromStdWString(wish.scale), m_fields);
    m_scale->setObjectName(QStringLiteral("printScale"));
    m_scale->setPlaceholderText(told("PrintScaleFits", "fits the paper"));
    m_form->addRow(told("PrintScale", "&Scale"), m_scale);
    m_hidden = new QCheckBox(told("PrintHidden", "&Hidden lines, dashed"), m_fields);
    m_hidden->setObjectName(QStringLiteral("printHidden"));
    m_hidden->setChecked(wish.hidden);
    m_form->addRow(QString(), m_hidden);

    auto* buttons = new QDialogButtonBox(this);
    m_print = buttons->addButton(told("PrintButton", "&Print"), QDialogButtonBox::AcceptRole);
    buttons->addButton(told("PrintCancel", "Cancel"), QDialogButtonBox::RejectRole);
    m_print->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* beside = new QHBoxLayout;
    beside->addWidget(m_preview, 1);
    beside->addWidget(m_fields, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout(this);
    column->addLayout(beside, 1);
    column->addWidget(buttons);
    m_what->setFocus();
}

PrintWish PrintDialog::wish() const
{
    PrintWish wish;
    wish.what = PrintWish::What(m_what->currentIndex());
    wish.paper = m_paper->currentText().toStdWString();
    wish.portrait = m_orientation->currentIndex() == 1;
    wish.margin = m_margin->value();
    wish.scale = m_scale->text().simplified().toStdWString();
    wish.hidden = m_hidden->isChecked();
    return wish;
}

QString PrintDialog::printerName() const
{
    return m_printer->currentData().toString();
}

void PrintDialog::refreshFields()
{
    const bool drawing = m_what->currentIndex() == int(PrintWish::What::Drawing);
    m_form->setRowVisible(m_margin, !drawing);
    m_form->setRowVisible(m_scale, drawing);
    m_form->setRowVisible(m_hidden, drawing);
    m_options->setEnabled(!printerName().isEmpty());
}

// What was changed may be printable, which accept() finds out.
void PrintDialog::refreshSoon(int pause)
{
    m_print->setEnabled(true);
    m_soon->start(pause);
}

void PrintDialog::refreshPage()
{
    if (m_making)
        return;
    PrintWish seen = wish();
    seen.dotsPerInch = kPreviewDotsPerInch;
    const QPointer<QWidget> focus = focusWidget();
    m_making = true;
    m_fields->setEnabled(false);
    m_print->setEnabled(false);
    if (seen.what == PrintWish::What::Drawing)
        m_preview->showWorking(told("PrintWorking", "Computing the drawing..."));
    Vs::Status status;
    const std::optional<VectorPage> page = m_maker(seen, status);
    m_making = false;
    m_fields->setEnabled(true);
    m_print->setEnabled(page.has_value());
    if (focus)
        focus->setFocus();
    m_preview->show(page, QString::fromStdWString(status.toString()));
}

QPrinter& PrintDialog::printer()
{
    if (!m_opened || m_opened->printerName() != printerName())
        m_opened =
            std::make_unique<QPrinter>(QPrinterInfo::printerInfo(printerName()), QPrinter::HighResolution);
    return *m_opened;
}

void PrintDialog::askOptions()
{
    QPrintDialog dialog(&printer(), this);
    dialog.setOptions(QAbstractPrintDialog::PrintShowPageSize);
    dialog.setWindowTitle(told("PrintOptionsTitle", "Printer Options"));
    // Nothing is printed there yet.
    if (auto* box = dialog.findChild<QDialogButtonBox*>())
        if (QPushButton* ok = box->button(QDialogButtonBox::Ok))
            ok->setText(told("PrintOptionsTake", "Apply"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    // Another one may have been chosen there, but no file: that is a choice of this dialog.
    const int chosen = m_printer->findData(m_opened->printerName());
    if (m_opened->outputFileName().isEmpty() && chosen >= 0)
        m_printer->setCurrentIndex(chosen);
    else
        m_opened.reset();
}

bool PrintDialog::print(Vs::Status& status)
{
    const std::optional<VectorPage> page = m_maker(wish(), status);
    return page && printOn(printer(), *page, status);
}

void PrintDialog::accept()
{
    // Return may be quicker than the preview; what can't be a page must not close the dialog.
    if (m_soon->isActive()) {
        m_soon->stop();
        refreshPage();
    }
    if (!m_making && m_print->isEnabled())
        QDialog::accept();
}

void PrintDialog::reject()
{
    if (m_making)
        Vs::Progress::requestCancel();
    else
        QDialog::reject();
}

} // namespace Vu
