#pragma once

#include "Server/Base/FilledText.h"
#include "Server/Base/StringTable.h"

#include <string>

namespace Vs {

/// The texts of one domain of the string table, in the user's language. Each library and add-in has one,
/// which is called like a function:
///
///     inline constexpr Vs::LocalizedText localized{L"VuDesign"};
///     ... localized("NoDesign", "There is no design.")
class LocalizedText
{
public:
    /// `domain` is a literal.
    constexpr explicit LocalizedText(const wchar_t* domain) : m_domain(domain) {}

    /// The user's text for `key`, or `english` where there is none.
    [[nodiscard]] std::wstring operator()(const char* key, const char* english) const
    {
        return StringTable::getLocalizedString(m_domain, key, english);
    }

private:
    const wchar_t* m_domain;
};

/// The same with %1%, %2%... filled in:
///
///     inline constexpr Vs::LocalizedFormat localizedFormat{L"VuDesign"};
///     ... localizedFormat("NoPart", "There is no part \"%1%\".", name)
class LocalizedFormat
{
public:
    constexpr explicit LocalizedFormat(const wchar_t* domain) : m_text(domain) {}

    template <class... Values>
    [[nodiscard]] std::wstring operator()(const char* key, const char* english, const Values&... values) const
    {
        return filledText(m_text(key, english), values...);
    }

private:
    LocalizedText m_text;
};

} // namespace Vs
