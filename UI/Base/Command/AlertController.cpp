#include "UI/Base/Command/AlertController.h"

#include <algorithm>

namespace Vu {

namespace {

constexpr size_t kKeptAlerts = 100;

}

AlertEventSource* AlertEventSource::get()
{
    static AlertEventSource* const source = new AlertEventSource;
    return source;
}

void AlertController::addAlert(EAlertSeverity severity, std::wstring text, bool blocking)
{
    if (m_alerts.size() >= kKeptAlerts)
        m_alerts.erase(m_alerts.begin());
    m_alerts.push_back({severity, std::move(text), blocking});
    m_enabled = true;
    const Alert added = m_alerts.back();
    AlertEventSource::get()->forEach([&](AlertEventSite* site) { site->alertAdded(this, added); });
}

void AlertController::addAlerts(const Vs::Status& status)
{
    if (status.reported())
        return;
    if (status.isError())
        addAlert(EAlertSeverity::Error, status.toString());
    for (const std::wstring& warning : status.warnings())
        addAlert(EAlertSeverity::Warning, warning);
}

bool AlertController::isInErrorState() const
{
    return std::any_of(m_alerts.begin(), m_alerts.end(), [](const Alert& alert) {
        return alert.blocking && alert.severity == EAlertSeverity::Error;
    });
}

void AlertController::clearAllAlerts()
{
    if (m_alerts.empty())
        return;
    m_alerts.clear();
    AlertEventSource::get()->forEach([&](AlertEventSite* site) { site->alertsCleared(this); });
}

void AlertController::clearBlockingAlerts()
{
    if (std::erase_if(m_alerts, [](const Alert& alert) { return alert.blocking; }) > 0)
        AlertEventSource::get()->forEach([&](AlertEventSite* site) { site->alertsCleared(this); });
}

} // namespace Vu
