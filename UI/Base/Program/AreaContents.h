#pragma once

#include <functional>
#include <string>

class QWidget;

namespace Vu {

/// How the widget that stands in areas of one contents key is made. Registered for as long as it lives, by
/// whoever brings that kind of contents; a later one of the same key takes the place of the earlier. Main
/// thread only.
///
/// The host itself draws "GraphicsCanvas", "Browser" and "TextCommands"; "ScrollPage" around other areas
/// gives them a scroll bar. Every other key without an entry here is that of a strip of toolbars.
class AreaContents
{
public:
    /// The widget belongs to the parent, and goes whenever the areas are laid out anew.
    using Make = std::function<QWidget*(QWidget* parent)>;

    AreaContents(std::string key, Make make);
    ~AreaContents();
    AreaContents(const AreaContents&) = delete;
    AreaContents& operator=(const AreaContents&) = delete;

    /// Null if nobody brings that kind of contents.
    [[nodiscard]] static QWidget* make(const std::string& key, QWidget* parent);

private:
    std::string m_key;
    Make m_make;
};

} // namespace Vu
