#pragma once

#include "Server/Base/Point2.h"
#include "UI/Base/Workspace/ShellEvents.h"

#include <QRect>

#include <memory>

namespace Vu {

/// The debug dialog's window, as created by the add-in's widgets.
class DebugWindow
{
public:
    virtual ~DebugWindow() = default;
    virtual void show(const Vs::Point2& corner) = 0;
    virtual void hide() = 0;
    virtual Vs::Point2 corner() const = 0;
};

/// The floating window with the tools for transcripts. It follows the shell: it disappears while none is
/// active and returns to its place. Main thread only.
class DebugDialog : public ShellEventSite
{
public:
    static DebugDialog* get();
    ~DebugDialog() override;

    void shellActivated(ShellEvent* event) override;
    void shellDeactivated(ShellEvent* event) override;

    /// Rebuilds the window.
    void show();
    /// Keeps its place.
    void hide();

    static bool savedShowState();
    static void saveShowState(bool shown);
    /// The stored position, or (400, 300) if that is no longer on any screen.
    static Vs::Point2 savedPos();
    static void savePos(const Vs::Point2& corner);

    /// Set by the add-in's widgets when they are loaded; a run without them shows nothing.
    class Toolkit
    {
    public:
        virtual ~Toolkit() = default;
        virtual std::unique_ptr<DebugWindow> makeWindow() = 0;
        /// All screens together.
        virtual QRect desktop() const = 0;
    };
    /// Not owned; null removes it.
    static void toolkit(Toolkit* toolkit);

private:
    DebugDialog();
    void clear();

    static const Vs::Point2 m_defaultPos;
    std::unique_ptr<DebugWindow> m_window; ///< Null while hidden.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
