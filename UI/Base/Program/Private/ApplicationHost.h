#pragma once

#include <memory>
#include <string>

class QWidget;

namespace Vu {

class ProgressDisplay;

/// What the running program has to know of its windows, which stand above it. `installHost` installs its own;
/// until then this one answers that there is none. Main thread only.
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
    /// Asks what is to become of documents that have changed; false if the program is to go on.
    [[nodiscard]] virtual bool mayLeaveDocuments() { return true; }
};

} // namespace Vu
