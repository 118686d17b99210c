#include "UI/Base/Window/WindowContents.h"

#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Window/AreaStage.h"
#include "UI/Base/Window/BrowserPanel.h"
#include "UI/Base/Window/CommandBox.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/HudFrame.h"
#include "UI/Base/Window/RovingFocus.h"
#include "UI/Base/Window/ToolbarStrip.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <algorithm>
#include <utility>

namespace Vu {

WindowContents::WindowContents(const WorkspaceWindow& owner, QWidget* window)
    : m_owner(owner), m_attic(new QWidget(window))
{
    m_attic->hide();
}

WindowContents::~WindowContents()
{
    // While its buttons can still be listed.
    delete m_attic.data();
}

void WindowContents::environment(const std::wstring& id)
{
    m_environment = id;
    fillStrips();
}

BrowserPanel* WindowContents::browser()
{
    if (!m_browser)
        m_browser = new BrowserPanel(m_attic);
    return m_browser;
}

CommandBox* WindowContents::commandBox()
{
    if (!m_commandBox)
        m_commandBox = new CommandBox(m_attic);
    return m_commandBox;
}

/// There is one of each of these, shown wherever an area wants it.
bool WindowContents::isShared(const QWidget* widget) const
{
    return widget == m_browser || widget == m_commandBox ||
           std::any_of(m_strips.begin(), m_strips.end(),
                       [&](const auto& strip) { return strip.second == widget; });
}

void WindowContents::keepWhatStays(QWidget* leaving)
{
    for (GraphicsCanvas* canvas : GraphicsCanvas::existingCanvases())
        if (QWidget* widget = canvas->existingWidget(); widget && leaving->isAncestorOf(widget))
            widget->setParent(m_attic);
    if (isShared(leaving))
        leaving->setParent(m_attic);
}

void WindowContents::rememberButtons(size_t known)
{
    for (size_t i = known; i < m_buttons.size(); ++i)
        connect(m_buttons[i], &QObject::destroyed, this,
                [this, button = m_buttons[i]] { std::erase(m_buttons, button); });
}

ToolbarStrip* WindowContents::strip(const Area& area)
{
    ToolbarStrip*& strip = m_strips[{area.contents()->text(), area.name()}];
    if (!strip) {
        strip = new ToolbarStrip(m_attic);
        new RovingFocus(strip);
    }
    return strip;
}

/// Each gets the toolbars of its area. A toolbar without an area in the layout goes into the first one with
/// its contents.
void WindowContents::fillStrips()
{
    Area* root = m_owner.area();
    if (!root)
        return;
    for (const auto& [key, strip] : m_strips) {
        std::vector<Area*> areas;
        root->childrenByContents(Vs::UniqueString::find(key.first.c_str()), areas);
        const auto named = [&](const std::wstring& name) {
            return std::any_of(areas.begin(), areas.end(),
                               [&](const Area* each) { return each->name() == name; });
        };
        if (!named(key.second))
            continue;
        std::vector<const Toolbar*> shown;
        for (const Toolbar& toolbar : ToolbarManager::get()->toolbars()) {
            const std::wstring& place = named(toolbar.area) ? toolbar.area : areas.front()->name();
            if (toolbar.contents == key.first && place == key.second && toolbar.standsIn(m_environment))
                shown.push_back(&toolbar);
        }
        const size_t known = m_buttons.size();
        strip->toolbars(shown, m_buttons);
        rememberButtons(known);
    }
}

QWidget* WindowContents::canvasFrame(Area& area, QWidget* parent)
{
    auto* frame = new HudFrame(parent);
    frame->canvas(area.canvas());
    const size_t known = m_buttons.size();
    frame->addHuds(m_buttons);
    rememberButtons(known);
    m_canvasFrames.emplace_back(frame);
    return frame;
}

QWidget* WindowContents::make(Area& area, QWidget* parent)
{
    const std::string key = area.contents() ? area.contents()->text() : std::string();
    QWidget* widget = nullptr;
    if (key == "GraphicsCanvas")
        return canvasFrame(area, parent);
    if (key == "BrowserWindow")
        widget = browser();
    else if (key == "TextCommands")
        widget = commandBox();
    else if (QWidget* brought = AreaContents::make(key, parent))
        return brought;
    else if (key.empty())
        return nullptr;
    else if (ToolbarStrip* toolbars = strip(area)) {
        fillStrips();
        if (toolbars->isEmpty())
            return nullptr;
        widget = toolbars;
    }
    widget->setParent(parent);
    widget->show();
    return widget;
}

void WindowContents::follow(Area& root, const AreaStage& stage)
{
    std::erase_if(m_canvasFrames, [](const auto& frame) { return frame.isNull(); });
    for (const QPointer<HudFrame>& frame : m_canvasFrames)
        if (stage.isAncestorOf(frame))
            frame->follow(root, stage);
}

} // namespace Vu
