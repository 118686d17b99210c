#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace Vs {

/// An interned identifier: there is one UniqueString per text in the process, so two of them are equal
/// exactly when their addresses are. Argument names, interface names and group names are such pointers,
/// looked up once and kept in a function-local static. An interned text is never freed.
class UniqueString
{
public:
    UniqueString(const UniqueString&) = delete;
    UniqueString& operator=(const UniqueString&) = delete;

    /// The one UniqueString of `text` (UTF-8). With `create` false, null if nobody has interned it yet.
    /// Safe to call from any thread.
    [[nodiscard]] static const UniqueString* find(std::string_view text, bool create = true);

    const std::string& text() const { return m_text; }
    const std::wstring& wideText() const { return m_wideText; }

private:
    explicit UniqueString(std::string_view text);

    std::string m_text;
    std::wstring m_wideText;
};

} // namespace Vs
