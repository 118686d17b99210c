#include "UI/Base/MessageBox.h"

#include "UI/Base/Application.h"
#include "UI/Base/Localized.h"

#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPainter>
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

struct Picture
{
    int icon;
    char16_t sign;
    QRgb colour;
};

/// By EMessageIcon. Sign and colour both tell the kind, so that neither is needed to tell it.
constexpr Picture kPictures[] = {
    {kQuestionIcon, u'?', 0xff2374c6},
    {kInformationIcon, u'i', 0xff2374c6},
    {kWarningIcon, u'!', 0xffc77700},
    {kErrorIcon, u'\u00d7', 0xffc0392b},
};

/// Null for no picture.
QPixmap pictureOf(int icon, double scale)
{
    constexpr int kSide = 40;
    for (const Picture& row : kPictures) {
        if (row.icon != icon)
            continue;
        QPixmap picture(QSize(kSide, kSide) * scale);
        picture.setDevicePixelRatio(scale);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgba(row.colour));
        painter.drawEllipse(1, 1, kSide - 2, kSide - 2);
        QFont font = painter.font();
        font.setPixelSize(kSide * 5 / 8);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QRect(0, 0, kSide, kSide), Qt::AlignCenter, QString(QChar(row.sign)));
        return picture;
    }
    return {};
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
    QMessageBox box(QMessageBox::NoIcon,
                    m_title.empty() ? QStringLiteral("Quillet") : QString::fromStdWString(m_title),
                    QString::fromStdWString(m_text), QMessageBox::NoButton, Application::get()->mainWidget());
    box.setTextFormat(Qt::PlainText);
    box.setIconPixmap(pictureOf(m_icon, box.devicePixelRatioF()));
    if (auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
        text->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    constexpr int kBorder = 16;
    box.layout()->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
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
