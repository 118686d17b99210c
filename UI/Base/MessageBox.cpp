#include "UI/Base/MessageBox.h"

#include "UI/Base/Application.h"
#include "UI/Base/Localized.h"

#include <QMessageBox>
#include <QPushButton>

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
    QMessageBox::ButtonRole role;
};

/// In the order of EStandardButton.
constexpr StandardButton kStandardButtons[] = {
    {"ButtonOk", "OK", QMessageBox::AcceptRole},
    {"ButtonCancel", "Cancel", QMessageBox::RejectRole},
    {"ButtonYes", "Yes", QMessageBox::YesRole},
    {"ButtonNo", "No", QMessageBox::NoRole},
};

QMessageBox::Icon qtIcon(int icon)
{
    switch (icon) {
    case kQuestionIcon:
        return QMessageBox::Question;
    case kInformationIcon:
        return QMessageBox::Information;
    case kWarningIcon:
        return QMessageBox::Warning;
    case kErrorIcon:
        return QMessageBox::Critical;
    default:
        return QMessageBox::NoIcon;
    }
}

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
    if (m_buttons.empty())
        addButton(kOkButton, true);
    if (installedResponder())
        return installedResponder()(*this);
    Application* application = Application::get();
    if (application->mainWidget() && !Application::headless() && !Application::testing())
        return ask();
    if (m_buttons.size() == 1) {
        application->inform(m_text);
        return 0;
    }
    const int answer = cancelIndex();
    application->inform(m_text + L' ' +
                        localizedFormat("NobodyAnswers", "(Nobody is there to answer; taken as \"%1%\".)",
                                        m_buttons[static_cast<size_t>(answer)].text));
    return answer;
}

int MessageBox::ask() const
{
    QMessageBox box(qtIcon(m_icon),
                    m_title.empty() ? QStringLiteral("Quillet") : QString::fromStdWString(m_title),
                    QString::fromStdWString(m_text), QMessageBox::NoButton, Application::get()->mainWidget());
    box.setTextFormat(Qt::PlainText);
    std::vector<QAbstractButton*> added;
    for (const Button& button : m_buttons) {
        const auto role = button.standard == kNotStandard
                              ? (button.isDefault ? QMessageBox::AcceptRole : QMessageBox::DestructiveRole)
                              : kStandardButtons[button.standard].role;
        QPushButton* push = box.addButton(QString::fromStdWString(button.text), role);
        if (button.isDefault)
            box.setDefaultButton(push);
        added.push_back(push);
    }
    box.setEscapeButton(added[static_cast<size_t>(cancelIndex())]);
    box.exec();
    for (size_t i = 0; i < added.size(); ++i)
        if (added[i] == box.clickedButton())
            return static_cast<int>(i);
    return cancelIndex();
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

void MessageBox::responder(Responder responder)
{
    installedResponder() = std::move(responder);
}

} // namespace Vu
