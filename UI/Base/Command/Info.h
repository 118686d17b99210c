#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Vs {
class ImageSetResource;
class Resource;
} // namespace Vs

namespace Vu {

/// What a tooltip shows under the title: a description, a second text, a picture.
class ToolTipInfo
{
public:
    ToolTipInfo() = default;
    /// The picture is not owned and may be null.
    explicit ToolTipInfo(std::wstring description, std::wstring extended = {}, Vs::Resource* image = nullptr);

    const std::wstring& description() const { return m_description; }
    void description(std::wstring text) { m_description = std::move(text); }
    const std::wstring& extended() const { return m_extended; }
    void extended(std::wstring text) { m_extended = std::move(text); }
    Vs::Resource* image() const { return m_image; }
    bool empty() const { return m_description.empty() && m_extended.empty() && !m_image; }

private:
    std::wstring m_description;
    std::wstring m_extended;
    Vs::Resource* m_image = nullptr;
};

/// The keys that run a command.
class HotKeyBinding
{
public:
    enum class EHotKeyMode {
        Always = 0,   ///< Whatever has the focus.
        Standard = 1, ///< Not while a text field takes the keys.
    };

    HotKeyBinding() = default;
    /// `keys` is a text such as "Ctrl+Shift+S"; the case of letters doesn't matter.
    explicit HotKeyBinding(std::string keys, EHotKeyMode mode = EHotKeyMode::Standard);

    const std::string& keys() const { return m_keys; }
    EHotKeyMode mode() const { return m_mode; }
    bool empty() const { return m_keys.empty(); }

private:
    std::string m_keys;
    EHotKeyMode m_mode = EHotKeyMode::Standard;
};

/// The identity record of a command, a control, an item of a list or an input: key, title, look. Made once
/// and kept as long as anything may use it; the host holds pointers to it.
class Info
{
public:
    /// `key` is the identifier, `name` the localised title. The icon is not owned and may be null.
    Info(std::wstring key, std::wstring name, Vs::ImageSetResource* icon);
    Info(std::wstring key, std::wstring name, Vs::ImageSetResource* icon, ToolTipInfo tooltip);
    Info(std::wstring key, std::wstring name, Vs::ImageSetResource* icon, ToolTipInfo tooltip,
         std::string hotkey, HotKeyBinding::EHotKeyMode mode);

    /// The record without a key, for separators.
    static Info* emptyInfo();

    const std::wstring& key() const { return m_key; }
    const std::wstring& name() const { return m_name; }
    Vs::ImageSetResource* icon() const { return m_icon; }
    const HotKeyBinding& hotkey() const { return m_hotkey; }
    const ToolTipInfo& tooltip() const { return m_tooltip; }
    void tooltip(ToolTipInfo tooltip) { m_tooltip = std::move(tooltip); }

    /// The names of what a command can be given at its start, whoever starts it; nothing, which is the
    /// default, if it takes whatever comes.
    const std::optional<std::vector<std::wstring>>& arguments() const { return m_arguments; }
    void arguments(std::optional<std::vector<std::wstring>> names) { m_arguments = std::move(names); }

    /// Gives the record another title and icon. A control that shows it takes notice when it is handed the
    /// record anew (InputControl::info).
    void changeAppearance(std::wstring name, Vs::ImageSetResource* icon);

private:
    std::wstring m_key;
    std::wstring m_name;
    Vs::ImageSetResource* m_icon;
    ToolTipInfo m_tooltip;
    HotKeyBinding m_hotkey;
    std::optional<std::vector<std::wstring>> m_arguments;
};

} // namespace Vu
