#pragma once

#include <array>

namespace Vu {

/// A window that stands by while a transcript is recorded, with checks to put into it.
class ValidationWindow
{
public:
    virtual ~ValidationWindow() = default;
    virtual void setShown(bool shown) = 0;
    /// Writes the check lines of what is being measured, if anything is.
    virtual void finishStartedMetrics() {}
};

/// The switch between the two validation windows: which of them the recording has, and whether it shows. It
/// goes with the recording, also where that ends by a line or since the disk is full. A run without a window
/// has neither, and writes the same lines. Main thread only.
class ValidationDialog
{
public:
    static ValidationDialog* get();
    virtual ~ValidationDialog() = default;

    /// Nothing happens unless a recording runs.
    void show(bool visible);
    /// Whether the user wants to see the window; kept between sessions.
    bool needToShow() const;
    void needToShow(bool value);

    void startNormalValidation();
    /// Also writes the line that begins measuring, so the recording must run already. It takes each step of a
    /// drag of the camera from now on.
    void startPerformanceValidation();
    /// Before the recording ends: hides the window, and ends measuring.
    void endValidation();

    enum Kind { kNormal = 0, kPerformance = 1 };
    /// Who makes the window of a kind, at the first call that needs it; it stays for the rest of the process.
    /// The add-in's widgets set it when they are loaded.
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
