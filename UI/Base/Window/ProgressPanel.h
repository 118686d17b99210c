#pragma once

#include "UI/Base/Window/TypedAhead.h"

#include <QEvent>
#include <QObject>
#include <QWidget>

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

    const QString& text() const { return m_shownText; }
    /// Of `steps()`.
    int value() const;
    static int steps();

    QToolButton* cancelButton() const { return m_cancel; }
    /// Widgets that go on working, with all that is in them, while work runs. They live as long as this one.
    void keepsAlive(std::vector<const QWidget*> widgets) { m_alive = std::move(widgets); }
    /// Whether the person's events reach that while work runs.
    [[nodiscard]] bool isAlive(const QObject* object) const;

private:
    void tell(const QString& text);

    QLabel* m_text;
    QProgressBar* m_bar;
    QToolButton* m_cancel;
    QString m_title, m_shownText;
    std::vector<const QWidget*> m_alive;
    bool m_cancelled = false;
};

/// Keeps the person's events away from everything but the cancel buttons for as long as it lives; Escape
/// cancels. What is typed into a field meanwhile comes there afterwards: a preview that takes long must not
/// eat the rest of a number, nor a file that is opened the next line (TypedAhead).
class BusyFilter : public QObject
{
public:
    explicit BusyFilter(ProgressPanel* panel);
    ~BusyFilter() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    ProgressPanel* m_panel;
    TypedAhead::Hold m_hold;
};

} // namespace Vu
