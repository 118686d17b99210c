#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/Point2.h"

#include <deque>
#include <string>
#include <vector>

namespace Vu {

class CommandInputBase;

/// What a placed HUD shows, one below the other: inputs of a running command, each with its title and value,
/// as long as they are enabled.
class Group
{
public:
    /// Not owned; taken out before it goes.
    void add(const CommandInputBase* input) { m_children.push_back(input); }
    void destroyChildren() { m_children.clear(); }
    const std::vector<const CommandInputBase*>& children() const { return m_children; }

private:
    std::vector<const CommandInputBase*> m_children;
};

/// A HUD that a command puts at a place of the active canvas. The clicks go through it.
class PlacedHUD
{
public:
    explicit PlacedHUD(std::wstring id) : m_id(std::move(id)) {}

    const std::wstring& id() const { return m_id; }
    Group* group() { return &m_group; }
    const Group* group() const { return &m_group; }
    bool shown() const { return m_shown; }
    /// What it tells about, in logical pixels from the canvas's upper left corner; it stands beside that.
    const Vs::Point2& place() const { return m_place; }

private:
    friend class HUDManager;
    std::wstring m_id;
    Group m_group;
    Vs::Point2 m_place;
    bool m_shown = false;
};

/// Listens to what lies over the active canvas.
class HUDEventSite : public Vs::EventSite
{
public:
    /// A HUD came, went or moved, there is another hint, or something else lies over the canvas.
    virtual void hudsChanged() = 0;
};

/// The HUDs that commands place, those that HUD files name with the placement "point", and the hint beside
/// the pointer. Whoever draws them asks their inputs for the values. Main thread only.
class HUDManager : public Vs::EventSource<HUDEventSite>
{
public:
    static HUDManager* get();

    /// Null if no file names it.
    PlacedHUD* hudById(const std::wstring& id);
    /// Shows it there, or moves it there. Does nothing if there is none of that id.
    void showHUD(const std::wstring& id, const Vs::Point2& place);
    void hideHUD(const std::wstring& id);
    const std::deque<PlacedHUD>& huds() const { return m_huds; }

    /// A text beside a place of the active canvas; empty for none. For CursorController.
    void hint(const std::wstring& text, const Vs::Point2& place);
    const std::wstring& hintText() const { return m_hint; }
    const Vs::Point2& hintPlace() const { return m_hintPlace; }

    /// Tells the sites.
    void changed();

private:
    HUDManager() = default;

    std::deque<PlacedHUD> m_huds; ///< In the order in which they were asked for.
    std::wstring m_hint;
    Vs::Point2 m_hintPlace;
};

} // namespace Vu
