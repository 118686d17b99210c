#include "UI/Commands/Adaptations/QT/Validation/QTPerfValidationWidget.h"

#include "UI/Base/View/MouseEvents.h"
#include "UI/Commands/Adaptations/QT/Panels/PanelLayout.h"
#include "UI/Commands/Adaptations/QT/Validation/QTAutoMatchLineEdit.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Transcripts/TranscriptLines.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>

#include <algorithm>

namespace Vu::Commands {
namespace {

/// One row of the grid; memory needs no line where its metric begins.
struct MetricRow
{
    const char* key;
    const char* label;
    const wchar_t* name;
    const wchar_t* startLine;
    const wchar_t* checkPrefix;
    bool ofMouse = false; ///< Measured on mouse moves, which a replay repeats only if they are recorded.
};

// clang-format off
constexpr std::array kMetrics = {
    MetricRow{"ElapsedTime",               "Elapsed Time",               L"ElapsedTime",               L"Performance.StartMetric ElapsedTime",               L"Performance.Validate ElapsedTime "},
    MetricRow{"PhysicalMemory",            "Physical Memory",            L"PhysicalMemory",            nullptr,                                              L"Performance.ValidateMemory /physical "},
    MetricRow{"VirtualMemory",             "Virtual Memory",             L"VirtualMemory",             nullptr,                                              L"Performance.ValidateMemory /virtual "},
    MetricRow{"CommandInteractivity",      "Command Interactivity",      L"CommandInteractivity",      L"Performance.StartMetric CommandInteractivity",      L"Performance.Validate CommandInteractivity "},
    MetricRow{"FramesRate",                "Frames Rate",                L"FramesRate",                L"Performance.StartMetric FramesRate",                L"Performance.Validate FramesRate "},
    MetricRow{"PrehighlightSelect",        "Prehighlight Select",        L"PrehighlightSelect",        L"Performance.StartMetric PrehighlightSelect",        L"Performance.Validate PrehighlightSelect ", true},
    MetricRow{"PrehighlightInteractivity", "Prehighlight Interactivity", L"PrehighlightInteractivity", L"Performance.StartMetric PrehighlightInteractivity", L"Performance.Validate PrehighlightInteractivity ", true},
};
// clang-format on

QString startText()
{
    return QString::fromStdWString(localized("StartMetrics", "Start Metrics"));
}

} // namespace

QTPerfValidationWidget::QTPerfValidationWidget(QWidget* parent) : QWidget(parent)
{
    static_assert(kMetrics.size() == kRows);
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    for (size_t i = 0; i < kRows; ++i) {
        Row& row = m_rows[i];
        row.box = new QCheckBox(QString::fromStdWString(localized(kMetrics[i].key, kMetrics[i].label)));
        row.description = new QTAutoMatchLineEdit(kMetrics[i].name);
        row.description->setPlaceholderText(descriptionText());
        grid->addWidget(row.box, static_cast<int>(i), 0);
        grid->addWidget(row.description, static_cast<int>(i), 1);
        connect(row.box, &QCheckBox::clicked, this, &QTPerfValidationWidget::onUpdateMetricButtonState);
        connect(row.description, &QLineEdit::textChanged, this,
                &QTPerfValidationWidget::onUpdateMetricButtonState);
    }
    m_button = new QPushButton(QString::fromStdWString(localized("StartEndMetrics", "Start/End Metrics")));
    m_button->setText(startText());
    m_button->setEnabled(false);
    grid->addWidget(m_button, static_cast<int>(kRows), 0);
    putInGroup(this, QString::fromStdWString(localized("PerformanceAndCapacity", "Performance and Capacity")),
               grid);
    connect(m_button, &QPushButton::clicked, this, &QTPerfValidationWidget::onClickStartEndMetricsButton);
}

void QTPerfValidationWidget::finishStartedMetrics()
{
    if (m_metricsStarted)
        onClickStartEndMetricsButton();
}

void QTPerfValidationWidget::onUpdateMetricButtonState()
{
    if (m_metricsStarted)
        return;
    const bool any =
        std::any_of(m_rows.begin(), m_rows.end(), [](const Row& row) { return row.box->isChecked(); });
    const bool complete = std::none_of(m_rows.begin(), m_rows.end(), [](const Row& row) {
        return row.box->isChecked() && row.description->text().isEmpty();
    });
    m_button->setEnabled(any && complete);
}

void QTPerfValidationWidget::onClickStartEndMetricsButton()
{
    if (m_metricsStarted)
        endMetrics();
    else
        startMetrics();
    setStarted(!m_metricsStarted);
}

void QTPerfValidationWidget::startMetrics()
{
    for (size_t i = 0; i < kRows; ++i)
        if (kMetrics[i].startLine && m_rows[i].box->isChecked())
            insertTranscriptLine(kMetrics[i].startLine);
    recordMoves(true);
}

void QTPerfValidationWidget::recordMoves(bool record)
{
    MouseEventSource* mouse = MouseEventSource::get();
    for (size_t i = 0; i < kRows; ++i)
        if (kMetrics[i].ofMouse && m_rows[i].box->isChecked()) {
            if (record)
                mouse->transcriptSubscribe(&MouseEventSource::fireMouseMove);
            else
                mouse->transcriptUnsubscribe(&MouseEventSource::fireMouseMove);
        }
}

void QTPerfValidationWidget::endMetrics()
{
    recordMoves(false);
    for (size_t i = 0; i < kRows; ++i) {
        if (!m_rows[i].box->isChecked())
            continue;
        const std::wstring description = m_rows[i].description->text().toStdWString();
        insertTranscriptLine(kMetrics[i].checkPrefix + normalizedDescription(description));
        m_rows[i].description->rememberText();
    }
}

void QTPerfValidationWidget::setStarted(bool started)
{
    m_metricsStarted = started;
    for (const Row& row : m_rows) {
        row.box->setEnabled(!started);
        row.description->setEnabled(!started);
    }
    m_button->setText(started ? QString::fromStdWString(localized("EndMetrics", "End Metrics"))
                              : startText());
}

} // namespace Vu::Commands
