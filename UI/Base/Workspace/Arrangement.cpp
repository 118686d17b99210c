#include "UI/Base/Workspace/Arrangement.h"

#include "Server/Base/Require.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/Private/AreaWishes.h"
#include "UI/Base/Workspace/Private/CanvasHost.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <algorithm>

namespace Vu {

Arrangement* Arrangement::make(ArrangementMgr* manager, Layout* layout)
{
    Vs::require(manager && layout, "an arrangement is a layout in a window");
    Arrangement* made =
        manager->m_owned.emplace_back(std::unique_ptr<Arrangement>(new Arrangement(manager, layout))).get();
    return made;
}

Arrangement::Arrangement(ArrangementMgr* manager, Layout* layout) : m_manager(manager), m_layout(layout)
{
    AreaWishes::apply(*m_layout);
    listen();
    inSight(false);
    m_subscriptions.add(UIBaseOptionGroup::get(), this);
}

void Arrangement::optionChanged(Vs::OptionEvent* event)
{
    AreaWishes::apply(*m_layout, event->name());
}

void Arrangement::listen()
{
    m_layout->onChange([this] {
        if (m_manager->arrangement() == this)
            m_manager->changed();
    });
}

std::unique_ptr<Layout> Arrangement::exchangeLayout(std::unique_ptr<Layout> layout)
{
    Vs::require(layout != nullptr, "an arrangement is a layout in a window");
    const bool shows = m_manager->arrangement() == this;
    m_layout->onChange(nullptr);
    inSight(false);
    m_layout.swap(layout);
    listen();
    inSight(shows);
    if (shows)
        m_manager->changed();
    return layout;
}

Arrangement::~Arrangement()
{
    m_subscriptions.clear();
    m_layout->onChange(nullptr);
}

/// Tells the canvases, which know of no areas.
void Arrangement::inSight(bool value) const
{
    std::vector<Area*> areas;
    m_layout->childrenByContents(Area::graphicsCanvas(), areas);
    std::vector<GraphicsCanvas*> canvases;
    for (const Area* area : areas)
        if (GraphicsCanvas* canvas = area->canvas())
            canvases.push_back(canvas);
    CanvasHost::get()->inSight(canvases, value);
}

void Arrangement::destroy()
{
    m_manager->remove(this);
    std::erase_if(m_manager->m_owned, [this](const auto& owned) { return owned.get() == this; });
}

ArrangementMgr::ArrangementMgr(WorkspaceWindow* window) : m_window(window)
{
    Vs::require(window != nullptr, "arrangements are those of a window");
}

ArrangementMgr::~ArrangementMgr()
{
    m_active = nullptr;
}

void ArrangementMgr::arrangement(Arrangement* arrangement)
{
    Vs::require(!arrangement || arrangement->arrangementManager() == this,
                "a window shows an arrangement of its own");
    if (arrangement == m_active)
        return;
    if (m_active)
        m_active->inSight(false);
    m_active = arrangement;
    if (m_active)
        m_active->inSight(true);
    changed();
}

std::vector<Layout*> ArrangementMgr::layouts() const
{
    std::vector<Layout*> all;
    for (const auto& arrangement : m_owned)
        all.push_back(arrangement->layout());
    return all;
}

void ArrangementMgr::remove(Arrangement* arrangement)
{
    if (arrangement && arrangement == m_active) {
        m_active = nullptr;
        arrangement->inSight(false);
        changed();
    }
}

void ArrangementMgr::changed()
{
    m_window->arrangementChanged();
}

} // namespace Vu
