#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "UI/Base/Session/SessionEvents.h"

#include <QWidget>

class QLabel;

namespace Vu {

/// Shows above the browser which component is being edited by itself (AssetSession::editedComponent) and what
/// contains it, with a button that leaves it. Hidden while the whole model is edited.
class EditedBar : public QWidget, private SessionEventSite, private Vs::AssetEventSite
{
public:
    explicit EditedBar(QWidget* parent);

private:
    void currentSessionChanged(SessionEvent*) override { refresh(); }
    void sessionPostActivateForAsset(SessionEvent*) override { refresh(); }
    void environmentActivated(EnvironmentEvent*) override { refresh(); }
    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void refresh();

    QLabel* m_place;
    QLabel* m_name;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
