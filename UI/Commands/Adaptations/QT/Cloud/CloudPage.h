#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Skyvault/CloudEvents.h"
#include "UI/Commands/Adaptations/QT/Options/ServicePage.h"

namespace Vu::Commands {

/// The preferences page for the cloud drive: whether it is enabled, who is signed in where, the detected
/// capabilities of the server, pending uploads, and the disk space of the local copies.
class CloudPage : public ServicePage, private Vs::CloudEventSite, private Vs::OptionEventSite
{
public:
    explicit CloudPage(QWidget* parent);

private:
    void cloudSessionChanged(Vs::CloudEvent*) override { refresh(); }
    void cloudFileStateChanged(Vs::CloudEvent*) override { refresh(); }
    void cloudFileArrived(Vs::CloudEvent*) override { refresh(); }
    void optionChanged(Vs::OptionEvent*) override { refresh(); }

    void refresh();
    void showWaiting();
    void signInOrOut();
    void sendWaiting();
    void clearCache();

    QLabel* m_account;
    QPushButton* m_sign;
    QLabel* m_traitsHead;
    QLabel* m_traits;
    QLabel* m_waiting = nullptr;
    QPushButton* m_send = nullptr;
    QLabel* m_cache = nullptr;
    QPushButton* m_clear = nullptr;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
