#pragma once

#include "Server/Base/Status.h"
#include "UI/Base/Workspace/Area.h"

namespace Vu {

/// The root area of a window's layout, and how layouts are read and written.
///
/// The file is XML:
///
///     <layout>
///       <area name="Browser" contents="BrowserWindow" placement="left" extent="260"/>
///       <area name="Views" contents="SplitView" filter="SideBySide"> ... </area>
///       <area name="Canvas" contents="GraphicsCanvas" filter=""/>
///     </layout>
///
/// An area without `filter` belongs to every form of the layout; one with it only to the form of that name,
/// the empty name being the ordinary form. Further attributes are those of Area: `visible`, `collapsed`,
/// `collapsedPlacement`, `ignoreOverlayable`, `x`, `y` (the point).
class Layout : public Vs::Implements<Layout, Area>
{
public:
    Layout() : Implements(L"Root", nullptr) {}

    /// Reads a layout; the caller owns it until an Arrangement takes it. Never null: a file that cannot be
    /// read, or that has no canvas in this form, gives a layout of one canvas, and a message that names file,
    /// line and cause is shown.
    [[nodiscard]] static Layout* load(const std::wstring& path, const std::wstring& filter);
    /// The same; the message goes to the status.
    [[nodiscard]] static Layout* load(const std::wstring& path, const std::wstring& filter,
                                      Vs::Status& status);

    /// Writes the areas below `root` so that `load` reads the same ones back. A file that cannot be written
    /// leaves a message; what was there stays.
    static void persist(const std::wstring& path, Area* root);

    /// Replaces each "SplitView" container below `root` by its first canvas.
    static void removeSplitViews(Area* root);

    /// Moves the canvases below one root, in their order, to the places of those below another, which they
    /// replace. What the other has no place for stays where it is.
    static void carryCanvases(Area& from, Area& to);

    /// Gives the areas below one root the places that their namesakes below another have: placement, point,
    /// extent, and whether they show and are collapsed. Containers and canvases stay as they are.
    static void carryPlaces(Area& from, Area& to);
};

} // namespace Vu
