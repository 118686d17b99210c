#pragma once

#include <QObject>
#include <QWidget>

class QLabel;
class QProgressBar;
class QToolButton;

namespace Vu {

/// What work says of itself, how far it is, and a button that gives it up.
class ProgressPanel : public QWidget
{
public:
    explicit ProgressPanel(QWidget* parent);

    void begin(const QString& title);
    void show(double fraction, const QString& step);
    void end();
    bool cancelled() const { return m_cancelled; }
    void cancel();

    QToolButton* cancelButton() const { return m_cancel; }

private:
    void tell(const QString& text);

    QLabel* m_text;
    QProgressBar* m_bar;
    QToolButton* m_cancel;
    QString m_title;
    bool m_cancelled = false;
};

/// Keeps the person's events away from everything but the cancel button for as long as it lives; Escape
/// cancels.
class BusyFilter : public QObject
{
public:
    explicit BusyFilter(ProgressPanel* panel);
    ~BusyFilter() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    ProgressPanel* m_panel;
};

} // namespace Vu
