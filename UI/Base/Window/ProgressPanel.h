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

/// Title and progress of running work, and a button that cancels it.
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
    /// Widgets that stay usable, with everything in them, while work runs. They live as long as this one.
    void keepsAlive(std::vector<const QWidget*> widgets) { m_alive = std::move(widgets); }
    /// Whether user events reach that object while work runs: it is one of these, or stands in a widget that
    /// has the property `kWorksMeanwhile` (UI/Base/Program/WorksMeanwhile.h).
    [[nodiscard]] bool isAlive(const QObject* object) const;
    static bool worksMeanwhile(const QObject* object);

private:
    void tell(const QString& text);

    QLabel* m_text;
    QProgressBar* m_bar;
    QToolButton* m_cancel;
    QString m_title, m_shownText;
    std::vector<const QWidget*> m_alive;
    bool m_cancelled = false;
};

/// Blocks user events everywhere but on the cancel buttons while it lives; Escape cancels. What is typed into
/// a field meanwhile is delivered afterwards: a slow preview must not eat the rest of a number, nor a file
/// being opened the next line (TypedAhead).
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
