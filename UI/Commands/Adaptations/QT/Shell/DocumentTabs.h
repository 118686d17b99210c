#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "UI/Base/Session/DocumentOrder.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SessionEvents.h"

#include <QFrame>
#include <QTimer>

#include <set>
#include <vector>

class QToolButton;

namespace Vu::Commands {

class TabBar;

/// The open documents as tabs: the name, a star for changes, and a remark on the document's state
/// (DocumentRemark) as in the window's title. A click shows a document, a drag moves it (DocumentOrder).
/// After them come a button for a new document and, if not all tabs fit, a list of them. A change to one
/// document touches only its tab.
class DocumentTabs : public QFrame,
                     private Vs::DocumentEventSite,
                     private Vs::AssetEventSite,
                     private DocumentRemarkSite,
                     private DocumentOrderSite,
                     private SessionEventSite
{
public:
    explicit DocumentTabs(QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void assetDirtyChanged(Vs::AssetEvent* event) override;
    void documentUpdated(Vs::DocumentEvent* event) override { relabelSoon(event->document()); }
    void documentSaved(Vs::DocumentEvent* event) override { relabelSoon(event->document()); }
    void documentClosed(Vs::DocumentEvent* event) override;
    void documentRemarksChanged(Vs::Event*) override;
    void documentOrderChanged() override { refreshSoon(); }
    void sessionCreated(SessionEvent*) override { refreshSoon(); }
    void currentSessionChanged(SessionEvent*) override { refreshSoon(); }
    void sessionPostActivateForAsset(SessionEvent*) override { refreshSoon(); }

    QToolButton* button(const char* name, const QString& what);
    void relabelSoon(const Vs::Document* document);
    void refreshSoon();
    void refresh();
    void bringTabs(const std::vector<Vs::Document*>& documents);
    void label(int index);
    void showWhichFits();
    void moved(int from, int to);
    void showMenu(const QPoint& place);
    void fillList();

    TabBar* m_bar;
    QToolButton* m_new;
    QToolButton* m_list;
    std::vector<Vs::Document*> m_documents;  ///< Of the tabs.
    std::set<const Vs::Document*> m_changed; ///< Whose tab texts have changed.
    QTimer m_soon;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
