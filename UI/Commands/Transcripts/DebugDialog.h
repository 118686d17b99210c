#pragma once

#include "Server/Base/Point2.h"
#include "UI/Base/Workspace/ShellEvents.h"

#include <QRect>

#include <memory>

namespace Vu {

/// The window of the debug dialog, as the add-in's widgets make it.
class DebugWindow
{
public:
    virtual ~DebugWindow() = default;
    virtual void show(const Vs::Point2& corner) = 0;
    virtual void hide() = 0;
    virtual Vs::Point2 corner() const = 0;
};

/// The floating window with the tools for transcripts. It follows the shell: it goes while none is active and
/// comes back at its place. Main thread only.
class DebugDialog : public ShellEventSite
{
public:
    static DebugDialog* get();
    ~DebugDialog() override;

    void shellActivated(ShellEvent* event) override;
    void shellDeactivated(ShellEvent* event) override;

    /// Builds the window anew.
    void show();
    /// Keeps its place.
    void hide();

    static bool savedShowState();
    static void saveShowState(bool shown);
    /// The kept place, or (400, 300) if it lies on no screen any more.
    static Vs::Point2 savedPos();
    static void savePos(const Vs::Point2& corner);

    /// What the add-in's widgets bring when they are loaded; a run without them shows nothing.
    class Toolkit
    {
    public:
        virtual ~Toolkit() = default;
        virtual std::unique_ptr<DebugWindow> makeWindow() = 0;
        /// All screens together.
        virtual QRect desktop() const = 0;
    };
    /// Not owned; null takes it away.
    static void toolkit(Toolkit* toolkit);

private:
    DebugDialog();
    void clear();

    static const Vs::Point2 m_defaultPos;
    std::unique_ptr<DebugWindow> m_window; ///< Null while hidden.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
