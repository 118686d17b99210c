#pragma once

#include "UI/Commands/Adaptations/QT/Panels/OverMainWindow.h"
#include "UI/Commands/Transcripts/ValidationDialog.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

namespace Vu::Commands {

/// Base of both validation windows: small, above all others, and existing as long as the program runs. They
/// have no close button, since they are shown and hidden with the recording.
class ValidationWindowBase : public QWidget, public ValidationWindow
{
public:
    void setShown(bool shown) override { setVisible(shown); }

protected:
    ValidationWindowBase()
        : QWidget(nullptr, Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint |
                               Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint)
    {
        // The program ends with its own windows, whether this one is open or not.
        setAttribute(Qt::WA_QuitOnClose, false);
        new OverMainWindow(this);
    }

    /// Has ValidationDialog make the window of a class when it needs one. Nothing is made while the program
    /// ends.
    template <class Window>
    static bool serve(ValidationDialog::Kind kind)
    {
        ValidationDialog::get()->maker(kind, []() -> ValidationWindow* {
            return QCoreApplication::instance() ? Window::get() : nullptr;
        });
        return true;
    }

    /// The one window of a class, made at the first call. It goes before Qt's application object does.
    template <class Window>
    static Window* theOne(bool* isNew = nullptr)
    {
        static QPointer<Window> window;
        const bool made = !window;
        if (made) {
            window = new Window;
            QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, window.data(),
                             [] { delete window; });
        }
        if (isNew)
            *isNew = made;
        return window;
    }
};

} // namespace Vu::Commands
