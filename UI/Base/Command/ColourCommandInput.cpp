#include "UI/Base/Command/ColourCommandInput.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/Private/Localized.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace Vu {
namespace {

constexpr const wchar_t* kNone = L"None";
constexpr unsigned kMost = 0xff; ///< Of one colour channel in screen values.

// clang-format off
constexpr ColourCommandInput::Swatch kSwatches[] = {
    {L"Red",    L"#c8322d", "SwatchRed",    "Red"},    {L"Orange", L"#e07b1f", "SwatchOrange", "Orange"},
    {L"Yellow", L"#e8c22e", "SwatchYellow", "Yellow"}, {L"Green",  L"#3f9b46", "SwatchGreen",  "Green"},
    {L"Teal",   L"#1f8f8b", "SwatchTeal",   "Teal"},   {L"Blue",   L"#2f6fd0", "SwatchBlue",   "Blue"},
    {L"Violet", L"#7c4fc4", "SwatchViolet", "Violet"}, {L"White",  L"#f2f2f0", "SwatchWhite",  "White"},
    {L"Grey",   L"#8e949b", "SwatchGrey",   "Grey"},   {L"Black",  L"#25282c", "SwatchBlack",  "Black"},
};
// clang-format on

const ColourCommandInput::Swatch* swatchOf(const std::wstring& code)
{
    const auto found = std::ranges::find(kSwatches, code, &ColourCommandInput::Swatch::code);
    return found == std::end(kSwatches) ? nullptr : found;
}

/// The linear light that a screen value stands for.
float light(unsigned number)
{
    const double signal = double(number) / kMost;
    return static_cast<float>(signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4));
}

unsigned signal(float light)
{
    const double signal =
        light <= 0.0031308f ? 12.92 * double(light) : 1.055 * std::pow(double(light), 1 / 2.4) - 0.055;
    return static_cast<unsigned>(std::lround(std::clamp(signal, 0.0, 1.0) * kMost));
}

} // namespace

ColourCommandInput* ColourCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    auto* input = new ColourCommandInput(set, number, info);
    input->value(kSwatches[0].code);
    return input;
}

std::span<const ColourCommandInput::Swatch> ColourCommandInput::swatches()
{
    return kSwatches;
}

std::wstring ColourCommandInput::titleOf(const std::wstring& code)
{
    const Swatch* swatch = swatchOf(code);
    return code.empty() ? localized("ColourNone", "None of its own")
           : swatch     ? localized(swatch->key, swatch->english)
                        : code;
}

std::wstring ColourCommandInput::codeOf(const Vs::Colour& colour)
{
    std::array<char, 10> code{};
    const int length = std::snprintf(code.data(), code.size(), "#%02x%02x%02x", signal(colour.r),
                                     signal(colour.g), signal(colour.b));
    const auto opacity = static_cast<unsigned>(std::lround(std::clamp(colour.a, 0.0f, 1.0f) * kMost));
    if (opacity < kMost)
        std::snprintf(code.data() + length, code.size() - size_t(length), "%02x", opacity);
    return Vs::Strings::widen(code.data());
}

std::optional<Vs::Colour> ColourCommandInput::colourOf(const std::wstring& code)
{
    const std::string text = Vs::Strings::narrow(code);
    constexpr size_t kLength = 7, kWithOpacity = 9;
    uint32_t number = 0;
    const char* const last = text.data() + text.size();
    if ((text.size() != kLength && text.size() != kWithOpacity) || text[0] != '#')
        return std::nullopt;
    const auto [end, error] = std::from_chars(text.data() + 1, last, number, 16);
    if (error != std::errc() || end != last)
        return std::nullopt;
    const bool hasOpacity = text.size() == kWithOpacity;
    const float opacity = hasOpacity ? static_cast<float>(number & kMost) / kMost : 1;
    if (hasOpacity)
        number >>= 8;
    return Vs::Colour{light(number >> 16), light(number >> 8 & kMost), light(number & kMost), opacity};
}

std::wstring ColourCommandInput::valueAsString() const
{
    const Swatch* swatch = swatchOf(value());
    return value().empty() ? kNone : swatch ? swatch->name : value();
}

bool ColourCommandInput::valueFromString(const std::wstring& text)
{
    const auto named = std::ranges::find_if(kSwatches, [&](const Swatch& each) { return each.name == text; });
    const std::optional<Vs::Colour> colour = colourOf(text);
    if (!colour && named == std::end(kSwatches) && text != kNone)
        return false;
    value(named != std::end(kSwatches) ? named->code : colour ? codeOf(*colour) : std::wstring());
    return true;
}

std::wstring ColourCommandInput::whyRefused(const std::wstring& text) const
{
    return localizedFormat(
        "ColourRefused", "\"%1%\" is not a colour; write it as #rrggbb, as #2f86e0, or as #rrggbbaa.", text);
}

} // namespace Vu
