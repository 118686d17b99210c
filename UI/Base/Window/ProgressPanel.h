#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <utility>
#include <vector>

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
/// cancels. What is typed into a field meanwhile comes there afterwards: a preview that takes long must not
/// eat the rest of a number.
class BusyFilter : public QObject
{
public:
    explicit BusyFilter(ProgressPanel* panel);
    ~BusyFilter() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void keep(QObject* object, const QEvent& event);

    ProgressPanel* m_panel;
    std::vector<std::pair<QPointer<QObject>, std::unique_ptr<QEvent>>> m_typed;
};

} // namespace Vu
