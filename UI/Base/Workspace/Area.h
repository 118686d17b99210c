#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Point2.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vu {

class GraphicsCanvas;

/// Where in its parent an area lies.
enum class EPlacement { Fill = 0, Left = 1, Right = 2, Top = 3, Bottom = 4, Floating = 5 };

/// A rectangle of a window's layout: a container of areas, or a place for one kind of content. The contents'
/// key says what is shown there: "GraphicsCanvas", "BrowserWindow", "CommandToolbar", "NavToolbar",
/// "TextCommands", "Orbicon", "Palette", "SplitView" ... (AreaContents tells the rest). A "Palette" is a
/// panel around the areas below it, and is shown, hidden and moved in their place (see `palette`).
///
/// Owns its children. An area of "GraphicsCanvas" owns its canvas from the start.
class Area : public Vs::Implements<Area>
{
public:
    Area(std::wstring name, const Vs::UniqueString* contents);
    ~Area() override;

    const std::wstring& name() const { return m_name; }
    /// Null for a plain container.
    const Vs::UniqueString* contents() const { return m_contents; }
    Area* parent() const { return m_parent; }
    /// Identifies this area among all others of the run, including those that are gone.
    unsigned long number() const { return m_number; }
    /// What is shown, hidden and moved in the area's place: its parent, if that is a palette, else itself.
    Area* palette();
    const std::vector<std::unique_ptr<Area>>& children() const { return m_children; }

    Area* addChild(std::unique_ptr<Area> child);
    /// Removes a direct child; the caller owns it. Null if it isn't one.
    std::unique_ptr<Area> removeChild(Area* child);

    /// Adds the areas below this one that have these contents, top down and in order; with `recursive`
    /// false only direct children.
    void childrenByContents(const Vs::UniqueString* contents, std::vector<Area*>& found,
                            bool recursive = true);
    /// The first area below this one with that name; with `recursive` false only direct children. Null if
    /// there is none.
    [[nodiscard]] Area* childByName(const std::wstring& name, bool recursive);

    bool visible() const { return m_visible; }
    void visible(bool value);
    EPlacement placement() const { return m_placement; }
    void placement(EPlacement value);
    /// In logical pixels from the upper left corner of the window's areas: of a floating area, its own
    /// corner. Docked areas of one side stand in the order of their points across that side (from the top
    /// downwards, from the left to the right); those with the same one in the order of the tree.
    const Vs::Point2& point() const { return m_point; }
    void point(const Vs::Point2& value);
    bool collapsed() const { return m_collapsed; }
    void collapsed(bool value);
    /// The side of the window on whose bar the area stands while it is collapsed.
    EPlacement collapsedPlacement() const { return m_collapsedPlacement; }
    void collapsedPlacement(EPlacement value) { m_collapsedPlacement = value; }
    /// Whether what may cover the area (a floating toolbar) is excluded from its inner rectangle.
    bool ignoreOverlayable() const { return m_ignoreOverlayable; }
    void ignoreOverlayable(bool value) { m_ignoreOverlayable = value; }
    /// Preferred width or height in logical pixels, depending on the side at which the area is placed; 0 for
    /// its natural size.
    int extent() const { return m_extent; }
    void extent(int value);

    /// Only of a "GraphicsCanvas" area.
    GraphicsCanvas* canvas() const { return m_canvas.get(); }

    /// Takes the area out of its parent and deletes it with all that is below. A root deletes itself.
    void destroy();

    /// Called when anything at or below this area changed. Only a root's is called.
    void onChange(std::function<void()> callback) { m_onChange = std::move(callback); }

    /// What a canvas's area is called in code: the keys are interned once.
    static const Vs::UniqueString* graphicsCanvas();
    static const Vs::UniqueString* splitView();

private:
    void changed();

    unsigned long m_number;
    std::wstring m_name;
    const Vs::UniqueString* m_contents;
    Area* m_parent = nullptr;
    std::vector<std::unique_ptr<Area>> m_children;
    std::shared_ptr<GraphicsCanvas> m_canvas; ///< Shared only in that its type is known where it is made.
    bool m_visible = true;
    bool m_collapsed = false;
    bool m_ignoreOverlayable = false;
    EPlacement m_placement = EPlacement::Fill;
    EPlacement m_collapsedPlacement = EPlacement::Left;
    int m_extent = 0;
    Vs::Point2 m_point;
    std::function<void()> m_onChange;
};

} // namespace Vu
