#include "UI/Base/Window/ColourButton.h"

#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/PropertyEdits.h"

#include <QColorDialog>
#include <QMenu>
#include <QPainter>

namespace Vu {
namespace {

struct Swatch
{
    const char* key;
    const char* english;
    const wchar_t* code;
};

// clang-format off
constexpr Swatch kSwatches[] = {
    {"SwatchRed", "Red", L"#c8322d"},       {"SwatchOrange", "Orange", L"#e07b1f"}, {"SwatchYellow", "Yellow", L"#e8c22e"},
    {"SwatchGreen", "Green", L"#3f9b46"},   {"SwatchTeal", "Teal", L"#1f8f8b"},     {"SwatchBlue", "Blue", L"#2f6fd0"},
    {"SwatchViolet", "Violet", L"#7c4fc4"}, {"SwatchWhite", "White", L"#f2f2f0"},   {"SwatchGrey", "Grey", L"#8e949b"},
    {"SwatchBlack", "Black", L"#25282c"},
};
// clang-format on

constexpr int kSide = 16;

QString words(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

QIcon swatch(const QColor& colour, const QWidget& widget)
{
    QPixmap picture(QSize(kSide, kSide) * widget.devicePixelRatioF());
    picture.setDevicePixelRatio(widget.devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(widget.palette().color(QPalette::PlaceholderText));
    painter.setBrush(colour);
    painter.drawRoundedRect(QRectF(0.5, 0.5, kSide - 1, kSide - 1), 3, 3);
    return picture;
}

} // namespace

ColourButton::ColourButton(const QString& title, Choose choose, QWidget* parent)
    : QToolButton(parent), m_title(title), m_choose(std::move(choose))
{
    setObjectName(QStringLiteral("propertyColour"));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setPopupMode(QToolButton::InstantPopup);
    setFocusPolicy(Qt::StrongFocus);
    setIconSize(QSize(kSide, kSide));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMenu(new QMenu(this));
    connect(menu(), &QMenu::aboutToShow, this, &ColourButton::fillMenu);
}

void ColourButton::colour(const std::optional<Vs::Colour>& colour, const QString& shown)
{
    m_colour = colour;
    setText(shown);
    setIcon(colour ? swatch(QColor(QString::fromStdWString(PropertyEdits::colourCode(*colour))), *this)
                   : QIcon());
    setAccessibleName(m_title + QStringLiteral(": ") + shown);
    PlainText::setTooltip(this, m_title);
}

void ColourButton::fillMenu()
{
    menu()->clear();
    for (const Swatch& each : kSwatches) {
        const QColor colour(QString::fromWCharArray(each.code));
        connect(menu()->addAction(swatch(colour, *this), words(each.key, each.english)), &QAction::triggered,
                this, [this, &each] { m_choose(PropertyEdits::colourOf(each.code)); });
    }
    menu()->addSeparator();
    connect(menu()->addAction(words("SwatchOther", "Another Colour...")), &QAction::triggered, this,
            &ColourButton::askForAny);
    connect(menu()->addAction(words("SwatchNone", "None of Its Own")), &QAction::triggered, this,
            [this] { m_choose(std::nullopt); });
}

void ColourButton::askForAny()
{
    const QColor now =
        m_colour ? QColor(QString::fromStdWString(PropertyEdits::colourCode(*m_colour))) : QColor(Qt::white);
    const QColor chosen = QColorDialog::getColor(now, window(), words("SwatchTitle", "Colour"),
                                                 QColorDialog::DontUseNativeDialog);
    if (chosen.isValid())
        m_choose(PropertyEdits::colourOf(chosen.name().toStdWString()));
}

} // namespace Vu
