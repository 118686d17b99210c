#include "UI/Base/Program/MessageBox.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Base/Program/Private/Answers.h"
#include "UI/Base/Program/Private/Display.h"

namespace Vu {
namespace {

constexpr int kNotStandard = -1;

MessageBox::Responder& installedResponder()
{
    static MessageBox::Responder responder;
    return responder;
}

struct StandardButton
{
    const char* key;
    const char* text;
    const char* name; ///< In transcripts, whatever the language.
};

/// In the order of EStandardButton.
constexpr StandardButton kStandardButtons[] = {
    {"ButtonOk", "OK", "Ok"},
    {"ButtonCancel", "Cancel", "Cancel"},
    {"ButtonYes", "Yes", "Yes"},
    {"ButtonNo", "No", "No"},
};

void inform(const std::wstring& text, int icon)
{
    MessageBox box(text);
    box.icon(icon);
    box.show();
}

} // namespace

void MessageBox::addButton(std::wstring text, bool isDefault)
{
    m_buttons.push_back({std::move(text), kNotStandard, isDefault});
}

void MessageBox::addButton(EStandardButton button, bool isDefault)
{
    const StandardButton& row = kStandardButtons[button];
    m_buttons.push_back({localized(row.key, row.text), button, isDefault});
}

std::vector<std::wstring> MessageBox::buttons() const
{
    std::vector<std::wstring> texts;
    for (const Button& button : m_buttons)
        texts.push_back(button.text);
    return texts;
}

int MessageBox::cancelIndex() const
{
    for (const int wanted : {int(kCancelButton), int(kNoButton)})
        for (size_t i = 0; i < m_buttons.size(); ++i)
            if (m_buttons[i].standard == wanted)
                return static_cast<int>(i);
    return static_cast<int>(m_buttons.size()) - 1;
}

int MessageBox::show()
{
    Vs::assertMainThread();
    if (m_buttons.empty())
        addButton(kOkButton, true);
    const bool asks = m_buttons.size() > 1;
    if (asks)
        if (const int brought = broughtAnswer(); brought >= 0)
            return brought;
    const auto noted = [&](int answer) {
        if (asks && answer >= 0 && answer < static_cast<int>(m_buttons.size()))
            Answers::given(Answers::Kind::Button, {nameOf(static_cast<size_t>(answer))});
        return answer;
    };
    if (installedResponder())
        return noted(installedResponder()(*this));
    Application* application = Application::get();
    if (somebodyIsThere())
        return noted(ask());
    if (m_buttons.size() == 1) {
        application->inform(m_text);
        return 0;
    }
    const int answer = cancelIndex();
    const std::wstring told =
        m_text + L' ' +
        localizedFormat("NobodyAnswers", "(Nobody is there to answer; taken as \"%1%\".)",
                        m_buttons[static_cast<size_t>(answer)].text);
    application->inform(told);
    // A recording has the answers that were given, so this is not what was recorded.
    if (Vs::TranscriptMgr::get()->replaying())
        Vs::TranscriptMgr::get()->lineFails(told);
    return answer;
}

std::wstring MessageBox::nameOf(size_t button) const
{
    const int standard = m_buttons[button].standard;
    return standard == kNotStandard ? std::to_wstring(button)
                                    : Vs::Strings::widen(kStandardButtons[standard].name);
}

/// The replayed transcript's answer; -1 if it has none. An answer that no button has cancels.
int MessageBox::broughtAnswer() const
{
    std::vector<std::wstring> answer;
    if (!Answers::take(Answers::Kind::Button, answer) || answer.empty())
        return -1;
    std::wstring names;
    for (size_t i = 0; i < m_buttons.size(); ++i) {
        if (nameOf(i) == answer.front())
            return static_cast<int>(i);
        names += (i > 0 ? L", " : L"") + nameOf(i);
    }
    Vs::TranscriptMgr::get()->lineFails(localizedFormat(
        "AnswerNoButton", "\"%1%\" is not an answer to the question \"%2%\": it is one of %3%.",
        answer.front(), m_text, names));
    return cancelIndex();
}

int MessageBox::ask() const
{
    std::vector<Display::Button> buttons;
    for (const Button& button : m_buttons)
        buttons.push_back({button.text, button.standard, button.isDefault});
    return Display::get()->askMessage(m_title, m_text, m_icon, buttons, cancelIndex(),
                                      Application::get()->mainWidget());
}

void MessageBox::information(const std::wstring& text)
{
    inform(text, kInformationIcon);
}

void MessageBox::warning(const std::wstring& text)
{
    inform(text, kWarningIcon);
}

void MessageBox::error(const std::wstring& text)
{
    inform(text, kErrorIcon);
}

bool MessageBox::canAsk()
{
    return installedResponder() || somebodyIsThere() || Answers::isExpected(Answers::Kind::Button);
}

void MessageBox::responder(Responder responder)
{
    installedResponder() = std::move(responder);
}

} // namespace Vu
