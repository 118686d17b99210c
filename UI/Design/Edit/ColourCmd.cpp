#include "UI/Design/Edit/ColourCmd.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/Info.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Vu::Design {

// clang-format off
constinit const EditRow ColourCmd::kRow = {
    .key = L"ColourCommand", .title = "Colour", .tooltip = "Colour components, bodies, solids or faces", .icon = &Resources::Colour};

namespace {

struct NamedColour
{
    const wchar_t* name;
    const wchar_t* code; ///< As people write them: red, green and blue of the screen, of two hexadecimal digits each.
};

constexpr NamedColour kColours[] = {
    {L"Red",    L"#c8322d"}, {L"Orange", L"#e07b1f"}, {L"Yellow", L"#e8c22e"}, {L"Green", L"#3f9b46"}, {L"Teal", L"#1f8f8b"}, {L"Blue", L"#2f6fd0"},
    {L"Violet", L"#7c4fc4"}, {L"White",  L"#f2f2f0"}, {L"Grey",   L"#8e949b"}, {L"Black", L"#25282c"},
};
// clang-format on

/// The share of light that a share of the screen's signal stands for.
float linear(unsigned signal)
{
    const double share = signal / 255.0;
    return static_cast<float>(share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4));
}

std::optional<Vs::Colour> colourOf(const std::wstring& code)
{
    const std::string text = Vs::Strings::narrow(code);
    uint32_t number = 0;
    const char* const last = text.data() + text.size();
    const bool hasOpacity = text.size() == 9;
    if ((text.size() != 7 && !hasOpacity) || text[0] != '#')
        return std::nullopt;
    const auto [end, error] = std::from_chars(text.data() + 1, last, number, 16);
    if (error != std::errc() || end != last)
        return std::nullopt;
    const float opacity = hasOpacity ? static_cast<float>(number & 0xff) / 255 : 1;
    if (hasOpacity)
        number >>= 8;
    return Vs::Colour{linear(number >> 16), linear(number >> 8 & 0xff), linear(number & 0xff), opacity};
}

} // namespace

void ColourCmd::onMakeInputs(EditInputs& inputs)
{
    using Vs::ESelectionType;
    m_objects = inputs.things(L"Objects", localized("EditObjects", "Objects"),
                              {ESelectionType::Component, ESelectionType::Body, ESelectionType::Face});
    m_colour = inputs.list(L"Colour", localized("EditColour", "Colour"),
                           {{L"Red", localized("ColourRed", "Red")},
                            {L"Orange", localized("ColourOrange", "Orange")},
                            {L"Yellow", localized("ColourYellow", "Yellow")},
                            {L"Green", localized("ColourGreen", "Green")},
                            {L"Teal", localized("ColourTeal", "Teal")},
                            {L"Blue", localized("ColourBlue", "Blue")},
                            {L"Violet", localized("ColourViolet", "Violet")},
                            {L"White", localized("ColourWhite", "White")},
                            {L"Grey", localized("ColourGrey", "Grey")},
                            {L"Black", localized("ColourBlack", "Black")},
                            {L"Code", localized("ColourCode", "By its code")},
                            {L"None", localized("ColourNone", "None of its own")}});
    m_code = inputs.text(L"Code", localized("EditCode", "Code"), L"#2f86e0");
    m_code->hiddenWhileDisabled(true);
    onInputChanged();
}

void ColourCmd::onInputChanged()
{
    m_code->enabled(m_colour->valueAsString() == L"Code");
}

std::wstring ColourCmd::onWhyInvalid() const
{
    if (m_colour->valueAsString() != L"Code" || colourOf(m_code->value()))
        return {};
    return localizedFormat("EditWrongCode",
                           "\"%1%\" is not a colour; write it as #rrggbb, as #2f86e0, or as #rrggbbaa.",
                           m_code->value());
}

Vs::ModelEdit ColourCmd::onMakeEdit(const Vs::Asset&)
{
    const std::wstring chosen = m_colour->valueAsString();
    const auto named = std::find_if(std::begin(kColours), std::end(kColours),
                                    [&](const NamedColour& colour) { return colour.name == chosen; });
    if (chosen == L"None")
        return Vs::ColourEdit{pathsOf(*m_objects), {}};
    return Vs::ColourEdit{pathsOf(*m_objects),
                          colourOf(named == std::end(kColours) ? m_code->value() : named->code)};
}

} // namespace Vu::Design
