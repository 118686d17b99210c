#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Vu::Commands {

/// What a captured image is to be like. Shared by the command and its dialog.
struct ImageOptions
{
    uint32_t width = 0;  ///< Pixels.
    uint32_t height = 0; ///< Pixels.
    bool transparentBackground = false;
    bool antiAliasing = true;
    bool transparencyLocked = false; ///< The file format knows no transparency.
    int resolution = 72;             ///< Pixels per inch, as the file says.
};

/// Asks a person, beginning with what `options` says; returns false for cancelled. Without a window nobody is
/// asked, and the options are taken as they are.
bool askImageOptions(ImageOptions& options);
/// Who asks: the add-in's widgets set it when they are loaded.
using ImageOptionsAsker = bool (*)(ImageOptions& options);
void imageOptionsAsker(ImageOptionsAsker asker);

/// Above this many pixels of width or height an image is rendered without anti-aliasing, whatever is wished.
inline constexpr uint32_t kLargestAntiAliased = 4096;
/// No image may be wider or higher.
inline constexpr uint32_t kLargestImage = 16384;

/// Whether this image is rendered with anti-aliasing.
bool rendersAntiAliased(const ImageOptions& options);

/// Whether the name ends in ".jpg", in any case: that format knows no transparency.
bool locksTransparency(std::wstring_view name);

/// The name itself if it ends in ".png", ".jpg" or ".tif", in any case; otherwise with ".png" behind it.
std::wstring withImageSuffix(const std::wstring& name);

/// The numbers of a size list's entry such as "1920 x 1080 (16:9)"; nothing for an entry without any.
std::optional<std::pair<uint32_t, uint32_t>> sizeOfEntry(std::wstring_view entry);

/// What the dialog computes while its fields are edited. The record always holds pixels; what is shown
/// depends on the unit.
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
    /// Pixels per inch. 0 stands for 72.
    int resolution() const { return m_options.resolution; }

    /// As the edits show them: pixels, or whole inches.
    uint32_t shownWidth() const;
    uint32_t shownHeight() const;

    void widthEdited(uint32_t shown);
    void heightEdited(uint32_t shown);
    /// With inches, the shown numbers stay and the pixels follow.
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
