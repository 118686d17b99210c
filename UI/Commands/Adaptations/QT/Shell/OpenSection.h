#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

namespace Vu {
class AssetSession;
}

namespace Vu::Commands {

/// The assets that are open in the workspace, with a picture of how they look now; a press goes back to them.
/// Takes no room without any. The pictures are drawn one by one behind the first picture of the window; while
/// the page isn't shown, nothing is.
class OpenSection : public TileSection,
                    private Vs::DocumentEventSite,
                    private DocumentRemarkSite,
                    private SessionEventSite
{
public:
    explicit OpenSection(QWidget* parent);
    ~OpenSection() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* page, QEvent* event) override;

private:
    void documentUpdated(Vs::DocumentEvent*) override { fillSoon(); }
    void documentSaved(Vs::DocumentEvent*) override { fillSoon(); }
    void documentClosed(Vs::DocumentEvent*) override { fillSoon(); }
    void documentRemarksChanged(Vs::Event*) override { fillSoon(); }
    void sessionCreated(SessionEvent*) override { fillSoon(); }
    void sessionClosed(SessionEvent*) override { fillSoon(); }

    void fillSoon();
    void fill();
    void drawNext(size_t index);

    std::vector<AssetSession*> m_sessions; ///< One of each tile.
    bool m_filling = false;
    bool m_stale = false; ///< Filled when the page is shown.
    bool m_drawing = false;
    bool m_painted = false;
};

} // namespace Vu::Commands
