#pragma once

#include <array>

namespace Vu {

/// A companion window while a transcript is recorded, with checks to insert into it.
class ValidationWindow
{
public:
    virtual ~ValidationWindow() = default;
    virtual void setShown(bool shown) = 0;
    /// Writes the check lines of what is being measured, if anything is.
    virtual void finishStartedMetrics() {}
};

/// Switches between the two validation windows: which of them the recording has, and whether it is shown. It
/// disappears with the recording, even if that is ended by a line or because the disk is full. A run without
/// a window has neither, and writes the same lines. Main thread only.
class ValidationDialog
{
public:
    static ValidationDialog* get();
    virtual ~ValidationDialog() = default;

    /// Does nothing unless a recording is running.
    void show(bool visible);
    /// Whether the user wants to see the window; remembered between sessions.
    bool needToShow() const;
    void needToShow(bool value);

    void startNormalValidation();
    /// Also writes the line that starts measuring, so the recording must be running already. From now on it
    /// records each step of a camera drag.
    void startPerformanceValidation();
    /// Before the recording ends: hides the window, and ends measuring.
    void endValidation();

    enum Kind { kNormal = 0, kPerformance = 1 };
    /// Creates the window of a kind, at the first call that needs it; it stays for the rest of the process.
    /// Set by the add-in's widgets when they are loaded.
    using Maker = ValidationWindow* (*)();
    void maker(Kind kind, Maker maker) { m_makers[kind] = maker; }

private:
    ValidationDialog();
    ValidationWindow* target() const;
    void recordingEnds();
    void endLastPerformanceStartedMetrics();

    int m_kind = kNormal;
    bool m_started = false; ///< For a recording that hasn't ended yet.
    bool m_shown = false;
    std::array<Maker, 2> m_makers = {};
};

} // namespace Vu
