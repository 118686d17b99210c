#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Commands/Adaptations/QT/Options/ServicePage.h"

namespace Vu::Commands {

/// The preferences page for the lifecycle service: whether it is enabled, who is signed in where, what has
/// not been sent yet, whether recovery files are attached to items, and whether its page asks first.
class ItemhubPage : public ServicePage, private Vs::ItemhubEventSite, private Vs::OptionEventSite
{
public:
    explicit ItemhubPage(QWidget* parent);

private:
    void sessionChanged(Vs::ItemhubEvent*) override { refresh(); }
    void uploadStateChanged(Vs::ItemhubUploadEvent*) override { refresh(); }
    void onRecoveryFileDeleted(Vs::ItemhubEvent*) override { refresh(); }
    void optionChanged(Vs::OptionEvent*) override { refresh(); }

    void refresh();

    QLabel* m_account;
    QPushButton* m_sign;
    QLabel* m_pending = nullptr;
    QPushButton* m_send = nullptr;
    QCheckBox* m_snapshots = nullptr;
    QCheckBox* m_trusted = nullptr; ///< Whether the dashboard asks nothing.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
