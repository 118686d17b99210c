#pragma once

#include "Server/Base/OptionGroup.h"

#include <string>
#include <variant>
#include <vector>

namespace Vu {

/// One preference that a person may set, based on an option of a group. A small value; main thread only.
class Preference
{
public:
    enum class Page { General, Files, Units, Navigation, Display };

    struct Toggle
    {
        Vs::Option<bool>& (*option)();
    };
    /// A whole number from `least` to `most`.
    struct Count
    {
        Vs::Option<int>& (*option)();
        int least, most;
    };
    /// One of some values, each with the title that a person reads.
    struct Choice
    {
        std::wstring value;
        std::wstring title;
    };
    struct TextChoice
    {
        Vs::Option<std::wstring>& (*option)();
        std::vector<Choice> (*choices)();
    };
    using Kind = std::variant<Toggle, Count, TextChoice>;

    constexpr Preference(Page page, const wchar_t* id, const char* key, const char* title, Kind kind)
        : m_page(page), m_id(id), m_key(key), m_title(title), m_kind(kind)
    {
    }

    Page page() const { return m_page; }
    /// The group and the option, which are the file and its member: "Units.lengthUnit".
    std::wstring id() const { return m_id; }
    std::wstring title() const;
    const Kind& kind() const { return m_kind; }

    /// As lines print and accept it: "true" and "false", a number, one of the choices' values.
    std::wstring text() const;
    /// Returns why the text is not one of its values; empty if it was set.
    [[nodiscard]] std::wstring setText(const std::wstring& text) const;
    void reset() const;
    bool isDefault() const;

private:
    Page m_page;
    const wchar_t* m_id;
    const char* m_key;
    const char* m_title;
    Kind m_kind;
};

/// The table behind the preferences dialog and the lines of "Options". Main thread only.
namespace Preferences {

/// In the order of the pages.
[[nodiscard]] const std::vector<Preference>& all();
/// Null if there is none; the case of letters doesn't matter.
[[nodiscard]] const Preference* find(const std::wstring& id);
/// Shows the dialog with what a search for the text finds: a preference, or a command by its identifier for
/// its keys.
void show(const std::wstring& text);
/// The text that the dialog is to begin with.
[[nodiscard]] const std::wstring& searched();
/// The page's title.
[[nodiscard]] std::wstring titleOf(Preference::Page page);

} // namespace Preferences
} // namespace Vu
