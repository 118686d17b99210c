#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/Status.h"

#include <string>
#include <vector>

namespace Vu {

class AlertController;

enum class EAlertSeverity { Information = 0, Warning = 1, Error = 2 };

struct Alert
{
    EAlertSeverity severity;
    std::wstring text;
    /// Whether the running command can't be committed while the alert stands.
    bool blocking;
};

/// Listens to the alerts of all controllers, to show them.
class AlertEventSite : public Vs::EventSite
{
public:
    virtual void alertAdded(AlertController*, const Alert&) {}
    virtual void alertsCleared(AlertController*) {}
};

class AlertEventSource : public Vs::EventSource<AlertEventSite>
{
public:
    static AlertEventSource* get();

private:
    friend class AlertController;
};

/// The messages shown beside the running command of one manager. It keeps the latest hundred. Main thread
/// only.
class AlertController
{
public:
    void addAlert(EAlertSeverity severity, std::wstring text, bool blocking = false);
    /// The errors and warnings of a status, each an alert, unless the status was reported already.
    void addAlerts(const Vs::Status& status);
    const std::vector<Alert>& alerts() const { return m_alerts; }

    /// Whether there is an error that keeps the running command from being committed.
    [[nodiscard]] bool isInErrorState() const;
    void clearAllAlerts();
    /// Removes the alerts of a command's inputs.
    void clearBlockingAlerts();

    /// Whether alerts are shown. Adding one turns this on.
    bool enabled() const { return m_enabled; }
    void enabled(bool value) { m_enabled = value; }

private:
    std::vector<Alert> m_alerts;
    bool m_enabled = true;
};

} // namespace Vu
