#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Itemhub/ItemhubEvents.h"

#include <QFrame>
#include <QPointer>

class QLineEdit;

namespace Vu {
class ItemhubSearchHandler;
}

namespace Vu::Commands {

class QTSearchResultPanel;

/// The field for searching the lifecycle service, with the results below it. It is absent where the service
/// is disabled.
class QTSearchBar : public QFrame, private Vs::ItemhubEventSite, private Vs::OptionEventSite
{
public:
    QTSearchBar(const QString& hint, QWidget* parent);
    ~QTSearchBar() override;

    QLineEdit* edit() const { return m_edit; }
    /// Null until something was typed.
    QTSearchResultPanel* panel() const { return m_panel; }
    ItemhubSearchHandler* handler() const { return m_handler; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void sessionChanged(Vs::ItemhubEvent*) override;
    void itemChanged(Vs::ItemhubItemEvent*) override;
    void optionChanged(Vs::OptionEvent*) override;
    void search();
    void makePanel();
    void leave();

    QLineEdit* m_edit;
    QPointer<QTSearchResultPanel> m_panel; ///< Of the window, which may be destroyed first.
    ItemhubSearchHandler* m_handler = nullptr;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
