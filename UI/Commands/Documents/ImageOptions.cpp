#include "UI/Commands/Documents/ImageOptions.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <cwctype>

namespace Vu::Commands {
namespace {

constexpr int kDefaultResolution = 72;

std::wstring lower(std::wstring_view text)
{
    std::wstring result(text);
    for (wchar_t& letter : result)
        letter = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(letter)));
    return result;
}

std::wstring lastFour(std::wstring_view name)
{
    return lower(name.substr(name.size() - std::min<size_t>(4, name.size())));
}

uint32_t bounded(double pixels)
{
    return static_cast<uint32_t>(std::clamp(std::round(pixels), 1.0, double(kLargestImage)));
}

ImageOptionsAsker installedAsker = nullptr;

} // namespace

bool askImageOptions(ImageOptions& options)
{
    return !installedAsker || installedAsker(options);
}

void imageOptionsAsker(ImageOptionsAsker asker)
{
    installedAsker = asker;
}

bool rendersAntiAliased(const ImageOptions& options)
{
    return options.antiAliasing && options.width <= kLargestAntiAliased &&
           options.height <= kLargestAntiAliased;
}

bool locksTransparency(std::wstring_view name)
{
    return lastFour(name) == L".jpg";
}

std::wstring withImageSuffix(const std::wstring& name)
{
    const std::wstring suffix = lastFour(name);
    return suffix == L".png" || suffix == L".jpg" || suffix == L".tif" ? name : name + L".png";
}

std::optional<std::pair<uint32_t, uint32_t>> sizeOfEntry(std::wstring_view entry)
{
    unsigned width = 0, height = 0;
    if (std::swscanf(std::wstring(entry).c_str(), L"%u x %u", &width, &height) != 2)
        return std::nullopt;
    return std::pair{width, height};
}

uint32_t ImageSizeModel::pixels(uint32_t shown) const
{
    return bounded(m_unit == Unit::Inches ? double(shown) * m_options.resolution : double(shown));
}

uint32_t ImageSizeModel::shownWidth() const
{
    return m_unit == Unit::Inches ? m_options.width / static_cast<uint32_t>(m_options.resolution)
                                  : m_options.width;
}

uint32_t ImageSizeModel::shownHeight() const
{
    return m_unit == Unit::Inches ? m_options.height / static_cast<uint32_t>(m_options.resolution)
                                  : m_options.height;
}

void ImageSizeModel::ratioLocked(bool locked)
{
    m_ratioLocked = locked;
    if (locked && m_options.width > 0)
        m_options.height = bounded(m_options.width / m_aspect);
}

void ImageSizeModel::widthEdited(uint32_t shown)
{
    m_options.width = pixels(shown);
    if (m_ratioLocked)
        m_options.height = bounded(m_options.width / m_aspect);
}

void ImageSizeModel::heightEdited(uint32_t shown)
{
    m_options.height = pixels(shown);
    if (m_ratioLocked)
        m_options.width = bounded(m_options.height * m_aspect);
}

void ImageSizeModel::resolutionEdited(int resolution)
{
    const uint32_t width = shownWidth();
    const uint32_t height = shownHeight();
    m_options.resolution = resolution > 0 ? resolution : kDefaultResolution;
    if (m_unit == Unit::Inches) {
        m_options.width = pixels(width);
        m_options.height = pixels(height);
    }
}

void ImageSizeModel::size(uint32_t width, uint32_t height)
{
    m_options.width = bounded(width);
    m_options.height = bounded(height);
}

} // namespace Vu::Commands
