#pragma once

#include <memory>
#include <string>

class QWidget;

namespace Vu {

class ProgressDisplay;

/// What the running program needs to know of its windows, which are a layer above it. `installHost` installs
/// its own; until then this one answers that there is none. Main thread only.
class ApplicationHost
{
public:
    virtual ~ApplicationHost() = default;

    /// Never null.
    static ApplicationHost* get();
    /// Installs a host, which is not owned. Null brings the empty one back.
    static void install(ApplicationHost* host);

    /// The widget of the active window; null as long as none is shown.
    virtual QWidget* mainWidget() const { return nullptr; }
    /// Where the active window shows progress; null as long as none is shown.
    virtual std::shared_ptr<ProgressDisplay> progress() const { return nullptr; }
    /// Shows a line in the active window; false if no window is shown.
    [[nodiscard]] virtual bool showMessage(const std::wstring& /*text*/) { return false; }
    virtual void closeWindows() {}
    /// Asks what to do with changed documents; false if the program should keep running.
    [[nodiscard]] virtual bool mayLeaveDocuments() { return true; }
};

} // namespace Vu
