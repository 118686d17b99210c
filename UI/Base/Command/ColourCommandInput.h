#pragma once

#include "Server/Body/BodyMesh.h"
#include "UI/Base/Command/CommandInput.h"

#include <optional>
#include <span>
#include <string>

namespace Vu {

/// A colour: one of a few that go well together, any other one, or none. The value is its code, red, green
/// and blue in screen values as "#2f86e0", with an opacity after them as "#2f86e080", and empty for none. As
/// text it is the name of one of those few, a code, or "None".
class ColourCommandInput : public Vs::Implements<ColourCommandInput, CommandInput<std::wstring>>
{
public:
    /// Begins with the first of the few.
    static ColourCommandInput* make(CommandInputSet* set, int number, Info* info);

    /// One of the few.
    struct Swatch
    {
        const wchar_t* name; ///< As lines give it.
        const wchar_t* code;
        const char* key; ///< Of what the user sees.
        const char* english;
    };
    static std::span<const Swatch> swatches();
    /// What the user reads of a value.
    static std::wstring titleOf(const std::wstring& code);

    static std::wstring codeOf(const Vs::Colour& colour);
    /// Nothing for what is not a code.
    static std::optional<Vs::Colour> colourOf(const std::wstring& code);

    [[nodiscard]] std::wstring valueAsString() const override;
    [[nodiscard]] bool valueFromString(const std::wstring& text) override;
    std::wstring displayText() const override { return titleOf(value()); }

private:
    using Implements::Implements;
    std::wstring whyRefused(const std::wstring& text) const override;
};

} // namespace Vu
