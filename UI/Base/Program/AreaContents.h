#pragma once

#include <functional>
#include <string>

class QWidget;

namespace Vu {

/// Makes the widget for areas with one contents key. Registered for as long as it exists, by whoever brings
/// that kind of contents; a later one with the same key replaces the earlier. Main thread only.
///
/// The host itself draws "GraphicsCanvas", "BrowserWindow" and "TextCommands"; "ScrollPage" around other
/// areas gives them a scroll bar, "Palette" a frame with a title. Every other key without an entry here is
/// that of a strip of toolbars. What stands below the browser's tree is that of "BrowserFoot". A widget with
/// the property "standsInToolbarLine" shares the line of the toolbars beside it, at its far end. The first
/// button or field in one with "beginsWithKeyboard" has the keyboard while no view shows and nobody chose
/// another.
class AreaContents
{
public:
    /// The widget belongs to the parent, and goes with its area.
    using Make = std::function<QWidget*(QWidget* parent)>;
    using Title = std::function<std::wstring()>;

    /// Contents with a title stand in a panel, which the user can move, collapse and close.
    AreaContents(std::string key, Make make, Title title = {});
    ~AreaContents();
    AreaContents(const AreaContents&) = delete;
    AreaContents& operator=(const AreaContents&) = delete;

    /// Null if nobody brings that kind of contents.
    [[nodiscard]] static QWidget* make(const std::string& key, QWidget* parent);
    /// Empty for contents without one.
    [[nodiscard]] static std::wstring title(const std::string& key);

private:
    static const AreaContents* find(const std::string& key);

    std::string m_key;
    Make m_make;
    Title m_title;
};

} // namespace Vu
