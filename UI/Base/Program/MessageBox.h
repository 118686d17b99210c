#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Vu {

/// The standard buttons by value.
enum EStandardButton { kOkButton = 0, kCancelButton = 1, kYesButton = 2, kNoButton = 3 };

/// The pictures by value.
enum EMessageIcon { kNoIcon = 0, kQuestionIcon = 1, kInformationIcon = 2, kWarningIcon = 3, kErrorIcon = 4 };

/// A message that a person reads, and answers if it has more than one button.
///
/// While a transcript is recorded the answer is recorded with the command that asked, and a replay answers so
/// again. Where nobody can answer (headless and test runs) nothing is shown: a box that only informs goes to
/// Application::inform, one that asks counts as cancelled, with a message. Tests set a responder.
class MessageBox
{
public:
    explicit MessageBox(std::wstring text) : m_text(std::move(text)) {}

    void icon(int icon) { m_icon = icon; }
    void title(std::wstring title) { m_title = std::move(title); }
    void addButton(std::wstring text, bool isDefault = false);
    void addButton(EStandardButton button, bool isDefault = false);

    const std::wstring& text() const { return m_text; }
    int icon() const { return m_icon; }
    std::vector<std::wstring> buttons() const;

    /// Returns the index of the chosen button in the order of adding. A box without buttons has one, OK.
    /// Closing the box counts as its Cancel button; if it has none, as its No button; else as its last one.
    int show();

    static void information(const std::wstring& text);
    static void warning(const std::wstring& text);
    static void error(const std::wstring& text);

    /// Whether there is somebody to answer a box that asks, or a replay that brings the answer.
    [[nodiscard]] static bool canAsk();

    /// Answers in place of a person; null removes it. Returns the index as `show` does.
    using Responder = std::function<int(const MessageBox&)>;
    static void responder(Responder responder);

private:
    struct Button
    {
        std::wstring text;
        int standard; ///< EStandardButton, or -1.
        bool isDefault;
    };
    int cancelIndex() const;
    std::wstring nameOf(size_t button) const;
    int broughtAnswer() const;
    int ask() const;

    std::wstring m_text;
    std::wstring m_title;
    int m_icon = kNoIcon;
    std::vector<Button> m_buttons;
};

} // namespace Vu
