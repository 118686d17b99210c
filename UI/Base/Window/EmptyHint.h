#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/View/SplitViewEvents.h"

#include <QTimer>
#include <QWidget>

namespace Vu {

class GraphicsCanvas;

/// A hint in a canvas on how to begin, as long as the model shown is empty. Clicks pass through it.
class EmptyHint : public QWidget,
                  private Vs::AssetEventSite,
                  private SessionEventSite,
                  private SplitViewEventSite
{
public:
    /// The canvas may be destroyed before this.
    EmptyHint(const GraphicsCanvas& canvas, QWidget* frame);

    /// Whether the canvas, which must exist, shows an empty model.
    static bool isEmpty(const GraphicsCanvas& canvas);

protected:
    bool eventFilter(QObject* frame, QEvent* event) override;

private:
    void assetComponentsChanged(Vs::ComponentsEvent*) override { m_soon.start(0); }
    void currentSessionChanged(SessionEvent*) override { m_soon.start(0); }
    void sessionPostActivateForAsset(SessionEvent*) override { m_soon.start(0); }
    void splitViewActivate(SplitViewEvent*) override { m_soon.start(0); }
    bool isWanted() const;
    void refresh();

    const GraphicsCanvas* m_canvas;
    QTimer m_soon;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
