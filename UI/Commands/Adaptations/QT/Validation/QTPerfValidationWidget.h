#pragma once

#include <QWidget>

#include <array>

class QCheckBox;
class QPushButton;

namespace Vu::Commands {

class QTAutoMatchLineEdit;

/// Marks in the transcript where metrics begin, and where they end and are compared.
class QTPerfValidationWidget : public QWidget
{
    Q_OBJECT

public:
    explicit QTPerfValidationWidget(QWidget* parent = nullptr);

    /// Writes the lines that end the started metrics, if any.
    void finishStartedMetrics();

private slots:
    void onClickStartEndMetricsButton();
    void onUpdateMetricButtonState();

private:
    struct Row
    {
        QCheckBox* box;
        QTAutoMatchLineEdit* description;
    };
    static constexpr size_t kRows = 7;

    void startMetrics();
    void endMetrics();
    /// For the mouse metrics, if any is checked.
    void recordMoves(bool record);
    void setStarted(bool started);

    std::array<Row, kRows> m_rows{};
    QPushButton* m_button;
    bool m_metricsStarted = false;
};

} // namespace Vu::Commands
