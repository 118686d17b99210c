#include "UI/Design/Adaptations/QT/ExportOptionsDialog.h"

#include "Server/DataModel/Asset.h"
#include "Server/Types/LengthUnit.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UnitName.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Design/Localized.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace Vu::Design {
namespace {

/// How long to wait for a count at most, in milliseconds.
constexpr qint64 kLongestCount = 3000;

QString text(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

} // namespace

ExportOptionsDialog::ExportOptionsDialog(Vs::Asset& asset, const Vs::Translator& translator,
                                         const std::wstring& path, ExportOptions& options, QWidget* parent)
    : QDialog(parent),
      m_asset(asset),
      m_translator(translator),
      m_choices(translator.saveChoices()),
      m_options(options)
{
    setObjectName(QStringLiteral("exportOptions"));
    setWindowTitle(text("ExportDesignCaption", "Export Design"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(PlainText::label(this, QFileInfo(QString::fromStdWString(path)).fileName()));
    auto* form = new QFormLayout;
    column->addLayout(form);
    addLists(form);
    addChecks(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    // The style's icon is black on any background.
    buttons->button(QDialogButtonBox::Cancel)->setIcon({});
    buttons->addButton(text("ExportButton", "Export"), QDialogButtonBox::AcceptRole)->setDefault(true);
    column->addStretch();
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExportOptionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showTriangles();
}

QComboBox* ExportOptionsDialog::addList(QFormLayout* form, const char* name, const QString& label)
{
    auto* list = new QComboBox(this);
    list->setObjectName(QLatin1String(name));
    list->setAccessibleName(label);
    form->addRow(label, list);
    return list;
}

QCheckBox* ExportOptionsDialog::addCheck(QFormLayout* form, const char* name, const QString& label, bool on)
{
    auto* check = new QCheckBox(label, this);
    check->setObjectName(QLatin1String(name));
    check->setChecked(on);
    form->addRow(check);
    return check;
}

void ExportOptionsDialog::addLists(QFormLayout* form)
{
    if (m_choices.refinement) {
        m_fineness = addList(form, "fineness", text("ExportFineness", "Fineness"));
        m_fineness->addItem(text("ExportCoarse", "Coarse"), QStringLiteral("coarse"));
        m_fineness->addItem(text("ExportAsShown", "As shown"), QString());
        m_fineness->addItem(text("ExportFine", "Fine"), QStringLiteral("fine"));
        m_fineness->setCurrentIndex(1);
        m_triangles = PlainText::label(this);
        m_triangles->setObjectName(QStringLiteral("triangles"));
        form->addRow(text("ExportTriangles", "Triangles"), m_triangles);
        connect(m_fineness, &QComboBox::activated, this, &ExportOptionsDialog::showTriangles);
    }
    if (m_choices.unit) {
        m_unit = addList(form, "unit", text("ExportUnit", "Unit of length"));
        for (const Vs::LengthUnit& unit : Vs::LengthUnit::all())
            m_unit->addItem(QString::fromStdWString(unitName(unit)), QString::fromLatin1(unit.key));
        m_unit->setCurrentIndex(m_unit->findData(QString::fromLatin1(
            m_options.unit.empty() ? Vs::LengthUnit::all().front().key : m_options.unit.c_str())));
    }
    if (m_choices.upAxis) {
        m_axis = addList(form, "upAxis", text("ExportUpAxis", "Axis that points upwards"));
        m_axis->addItem(text("ExportUsualAxis", "As usual in such files"), int(Vs::UpAxis::Usual));
        m_axis->addItem(QStringLiteral("Y"), int(Vs::UpAxis::Y));
        m_axis->addItem(QStringLiteral("Z"), int(Vs::UpAxis::Z));
        m_axis->setCurrentIndex(m_axis->findData(int(m_options.upAxis)));
    }
}

void ExportOptionsDialog::addChecks(QFormLayout* form)
{
    m_selected = addCheck(form, "selectedOnly", text("ExportSelectedOnly", "Only what is selected"),
                          m_options.selectedOnly);
    m_selected->setEnabled(!selectedComponents().empty());
    m_hidden =
        addCheck(form, "hiddenToo", text("ExportHiddenToo", "Hidden parts as well"), m_options.hiddenToo);
    m_separate =
        addCheck(form, "separate", text("ExportSeparate", "A file for each part"), m_options.separate);
    m_combine = addCheck(form, "combine", text("ExportCombine", "All parts as one"), m_options.combine);
    // Each is the opposite of the other.
    connect(m_separate, &QCheckBox::clicked, m_combine, [this] { m_combine->setChecked(false); });
    connect(m_combine, &QCheckBox::clicked, m_separate, [this] { m_separate->setChecked(false); });
    connect(m_selected, &QCheckBox::clicked, this, &ExportOptionsDialog::showTriangles);
    connect(m_hidden, &QCheckBox::clicked, this, &ExportOptionsDialog::showTriangles);
    if (m_choices.text)
        m_text = addCheck(form, "asText", text("ExportAsText", "As text, not binary"), m_options.asText);
}

ExportOptions ExportOptionsDialog::chosen() const
{
    ExportOptions options = m_options;
    if (m_fineness)
        options.refinement = m_fineness->currentData().toString().toStdWString();
    if (m_unit)
        options.unit = m_unit->currentData().toString().toStdString();
    if (m_axis)
        options.upAxis = static_cast<Vs::UpAxis>(m_axis->currentData().toInt());
    if (m_text)
        options.asText = m_text->isChecked();
    options.selectedOnly = m_selected->isChecked();
    options.hiddenToo = m_hidden->isChecked();
    options.separate = m_separate->isChecked();
    options.combine = m_combine->isChecked();
    return options;
}

void ExportOptionsDialog::showTriangles()
{
    if (!m_triangles)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QElapsedTimer clock;
    clock.start();
    const std::unique_ptr<Vs::TranslatorSaveOptions> options = m_translator.createSaveOptions();
    chosen().apply(*options);
    Vs::TranslatorContext context;
    context.asset(&m_asset);
    const uint64_t count =
        m_translator.countTriangles(*options, context, [&] { return clock.elapsed() < kLongestCount; });
    QApplication::restoreOverrideCursor();
    m_triangles->setText(count > 0 ? QLocale().toString(qulonglong(count))
                                   : text("ExportNotCounted", "not counted: it would take too long"));
}

void ExportOptionsDialog::accept()
{
    m_options = chosen();
    QDialog::accept();
}

namespace {

const bool registered = [] {
    exportOptionsAsker([](Vs::Asset& asset, const Vs::Translator& translator, const std::wstring& path,
                          ExportOptions& options) {
        return ExportOptionsDialog(asset, translator, path, options, Application::get()->mainWidget())
                   .exec() == QDialog::Accepted;
    });
    return true;
}();

} // namespace
} // namespace Vu::Design
