#pragma once

#include "Server/Base/Status.h"

#include <memory>
#include <string>

namespace Rendra {

/// A context for drawing into memory that needs no display server. Current in the thread that created it
/// until it is destroyed there.
class EglContext
{
public:
    /// Null, with the reason in the status, if this machine offers none.
    [[nodiscard]] static std::unique_ptr<EglContext> make(Vs::Status& status);
    ~EglContext();
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    /// Whether the driver has given up the context since the last call, as when a graphics unit was reset, or
    /// somebody else has taken it from this thread: nothing that was drawn since then can be relied on.
    [[nodiscard]] bool isLost() const;

    /// Makes it current again; false if that isn't possible any more. Without a current context, no function
    /// of OpenGL may be called.
    [[nodiscard]] bool retake();

    /// The driver's version and name.
    std::wstring description() const;

private:
    [[nodiscard]] static std::unique_ptr<EglContext> find(Vs::Status& status);
    EglContext(void* display, void* context) : m_display(display), m_context(context) {}

    void* m_display;
    void* m_context;
};

} // namespace Rendra
