#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Vu::Commands {

/// The properties of a captured image. Shared by the command and its dialog.
struct ImageOptions
{
    uint32_t width = 0;  ///< Pixels.
    uint32_t height = 0; ///< Pixels.
    bool transparentBackground = false;
    bool antiAliasing = true;
    /// With all that the view shows around the model, not for use elsewhere.
    bool asShown = false;
    float pixelRatio = 0;            ///< By which lines are wider than a pixel; 0 for that of the screen.
    bool transparencyLocked = false; ///< The file format doesn't support transparency.
    int resolution = 72;             ///< Pixels per inch, as written to the file.
};

/// Asks the user, starting from `options`; returns false if cancelled. Without a window the options are taken
/// as they are.
bool askImageOptions(ImageOptions& options);
/// The function that asks: set by the add-in's widgets when they are loaded.
using ImageOptionsAsker = bool (*)(ImageOptions& options);
void imageOptionsAsker(ImageOptionsAsker asker);

/// Above this width or height in pixels an image is rendered without anti-aliasing, even if it is requested.
inline constexpr uint32_t kLargestAntiAliased = 4096;
/// The maximum width and height of an image.
inline constexpr uint32_t kLargestImage = 16384;

/// Whether this image is rendered with anti-aliasing.
bool rendersAntiAliased(const ImageOptions& options);

/// Whether the name ends in ".jpg", in any case: that format doesn't support transparency.
bool locksTransparency(std::wstring_view name);

/// The name itself if it ends in ".png", ".jpg" or ".tif", in any case; otherwise with ".png" appended.
std::wstring withImageSuffix(const std::wstring& name);

/// The numbers of a size list's entry such as "1920 x 1080 (16:9)"; nothing for an entry without numbers.
std::optional<std::pair<uint32_t, uint32_t>> sizeOfEntry(std::wstring_view entry);

/// The dialog's calculations while its fields are edited. The record always holds pixels; the displayed
/// values depend on the unit.
class ImageSizeModel
{
public:
    enum class Unit { Pixels, Inches };

    /// `aspect` is the width of the current window divided by its height.
    ImageSizeModel(ImageOptions& options, double aspect) : m_options(options), m_aspect(aspect) {}

    Unit unit() const { return m_unit; }
    void unit(Unit unit) { m_unit = unit; }
    bool ratioLocked() const { return m_ratioLocked; }
    /// Locking adapts the height to the width.
    void ratioLocked(bool locked);
    /// Pixels per inch. 0 means 72.
    int resolution() const { return m_options.resolution; }

    /// As displayed in the fields: pixels, or whole inches.
    uint32_t shownWidth() const;
    uint32_t shownHeight() const;

    void widthEdited(uint32_t shown);
    void heightEdited(uint32_t shown);
    /// In inches, the displayed numbers stay and the pixels follow.
    void resolutionEdited(int resolution);
    void size(uint32_t width, uint32_t height);

private:
    uint32_t pixels(uint32_t shown) const;

    ImageOptions& m_options;
    double m_aspect;
    Unit m_unit = Unit::Pixels;
    bool m_ratioLocked = false;
};

} // namespace Vu::Commands
