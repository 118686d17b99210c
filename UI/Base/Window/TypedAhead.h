#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <memory>

namespace Vu {

/// Keys typed into a field while work runs. They are delivered to their window in order when it is over, and
/// those typed before the last one is delivered queue up behind them.
class TypedAhead : public QObject
{
public:
    /// Keeps what is typed as long as it lives. May nest.
    class [[nodiscard]] Hold
    {
    public:
        Hold();
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        QPointer<TypedAhead> m_typed; ///< It may be destroyed first, with the application.
    };

    /// Whether what is typed into that native window goes into a field, even before the window system has
    /// reported that the window has the focus.
    static bool goesIntoField(const QObject* window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    explicit TypedAhead(QObject* parent);
    void send();

    struct Key
    {
        QPointer<QWidget> window; ///< It may have a new native window by the time the key arrives.
        std::unique_ptr<QEvent> event;
    };
    std::deque<Key> m_keys;
    const QEvent* m_sent = nullptr; ///< The one on its way.
    QTimer m_soon;
    int m_held = 0;
};

} // namespace Vu
