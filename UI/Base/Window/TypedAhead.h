#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <memory>

namespace Vu {

/// Keys that are typed into a field while work runs. They come to their window in their order when it is
/// over, and those that are typed before the last of them has come line up behind them.
class TypedAhead : public QObject
{
public:
    /// Keeps what is typed for as long as it lives. They may nest.
    class [[nodiscard]] Hold
    {
    public:
        Hold();
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        QPointer<TypedAhead> m_typed; ///< It may go before, with the application.
    };

    /// Whether what is typed into that native window goes into a field, also before the window system has
    /// said that the window has the keyboard.
    static bool goesIntoField(const QObject* window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    explicit TypedAhead(QObject* parent);
    void send();

    struct Key
    {
        QPointer<QWidget> window; ///< It may have got another native one when the key comes.
        std::unique_ptr<QEvent> event;
    };
    std::deque<Key> m_keys;
    const QEvent* m_sent = nullptr; ///< That which is on its way.
    QTimer m_soon;
    int m_held = 0;
};

} // namespace Vu
