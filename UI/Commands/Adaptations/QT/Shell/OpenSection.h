#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

#include <map>
#include <set>

namespace Vu {
class AssetSession;
}

namespace Vu::Commands {

/// The assets open in the workspace, with a picture of their present state; a press returns to them. Takes no
/// room without any. Pictures are drawn one by one after the window's first frame, and again only for what
/// was changed or viewed since; while the page isn't shown, none are drawn.
class OpenSection : public TileSection,
                    private Vs::AssetEventSite,
                    private Vs::DocumentEventSite,
                    private DocumentRemarkSite,
                    private SessionEventSite
{
public:
    explicit OpenSection(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* page, QEvent* event) override;

private:
    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void documentUpdated(Vs::DocumentEvent*) override { fillSoon(); }
    void documentSaved(Vs::DocumentEvent*) override { fillSoon(); }
    void documentClosed(Vs::DocumentEvent*) override { fillSoon(); }
    void documentRemarksChanged(Vs::Event*) override { fillSoon(); }
    void sessionCreated(SessionEvent*) override { fillSoon(); }
    void sessionPostActivateForAsset(SessionEvent* event) override;
    void sessionClosed(SessionEvent* event) override;

    void fillSoon();
    void fill();
    Tile* makeTile(AssetSession& session);
    static void describe(Tile& tile, const AssetSession& session);
    void drawNext();

    std::map<AssetSession*, Tile*> m_tiles;
    std::set<AssetSession*> m_undrawn; ///< Whose pictures are outdated.
    /// While a document is still being opened, there is nothing to draw yet.
    std::set<AssetSession*> m_drawnEmpty;
    bool m_filling = false;
    bool m_stale = false; ///< Filled when the page is shown.
    bool m_drawing = false;
    bool m_painted = false;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
