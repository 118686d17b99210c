#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/OptionGroup.h"

#include <memory>
#include <vector>

namespace Vu {

class ArrangementMgr;
class Layout;
class WorkspaceWindow;

/// A layout as it stands in one window. Owned by the window's ArrangementMgr from `make` to `destroy`. Its
/// areas follow what the user wants to see of them, when they change (UIBaseOptionGroup).
class Arrangement : public Vs::Implements<Arrangement>, private Vs::OptionEventSite
{
public:
    /// Takes the layout over, and shows of it what the user wants to see.
    static Arrangement* make(ArrangementMgr* manager, Layout* layout);
    ~Arrangement() override;

    Layout* layout() const { return m_layout.get(); }
    ArrangementMgr* arrangementManager() const { return m_manager; }
    /// Takes a layout over in the place of the present one, which becomes the caller's.
    [[nodiscard]] std::unique_ptr<Layout> exchangeLayout(std::unique_ptr<Layout> layout);
    void destroy();

private:
    friend class ArrangementMgr;
    Arrangement(ArrangementMgr* manager, Layout* layout);
    void optionChanged(Vs::OptionEvent* event) override;
    void inSight(bool value) const;
    void listen();

    ArrangementMgr* m_manager;
    std::unique_ptr<Layout> m_layout;
    Vs::Subscriptions m_subscriptions;
};

/// The arrangements of one window, of which at most one shows.
class ArrangementMgr : public Vs::Implements<ArrangementMgr>
{
public:
    explicit ArrangementMgr(WorkspaceWindow* window);
    ~ArrangementMgr() override;

    WorkspaceWindow* window() const { return m_window; }

    Arrangement* arrangement() const { return m_active; }
    /// Shows an arrangement in place of the one that shows.
    void arrangement(Arrangement* arrangement);
    /// Those of all arrangements of the window.
    [[nodiscard]] std::vector<Layout*> layouts() const;
    /// Takes an arrangement out of the window; it lives on. Nothing happens if it doesn't show.
    void remove(Arrangement* arrangement);

    /// Has the window lay out its areas anew after one of them changed.
    void changed();

private:
    friend class Arrangement;
    WorkspaceWindow* m_window;
    std::vector<std::unique_ptr<Arrangement>> m_owned;
    Arrangement* m_active = nullptr;
};

} // namespace Vu
