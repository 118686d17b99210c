#include "UI/Base/Window/ColourMenu.h"

#include "UI/Base/Command/ColourCommandInput.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Window/CommandMenu.h"
#include "UI/Base/Window/Told.h"

#include <QApplication>
#include <QColorDialog>
#include <QPainter>
#include <QTimer>

#include <vector>

namespace Vu {
namespace {

constexpr const char* kRecent = "recentColours";
constexpr size_t kMostRecent = 5;

std::vector<std::wstring> recentColours()
{
    std::vector<std::wstring> codes =
        UIInternalOptionGroup::get()->value(kRecent, std::vector<std::wstring>());
    std::erase_if(codes, [](const std::wstring& code) { return !ColourCommandInput::colourOf(code); });
    codes.resize(std::min(codes.size(), kMostRecent));
    return codes;
}

void remember(const std::wstring& code)
{
    std::vector<std::wstring> codes = recentColours();
    std::erase(codes, code);
    codes.insert(codes.begin(), code);
    codes.resize(std::min(codes.size(), kMostRecent));
    UIInternalOptionGroup::get()->setValue(kRecent, codes);
}

} // namespace

ColourMenu::ColourMenu(Choose choose, Current current, QWidget* parent)
    : QMenu(parent), m_choose(std::move(choose)), m_ask(std::move(current))
{
    connect(this, &QMenu::aboutToShow, this, &ColourMenu::fill);
}

QIcon ColourMenu::swatch(const std::wstring& code, const QWidget& widget)
{
    QPixmap picture(QSize(kSide, kSide) * widget.devicePixelRatioF());
    picture.setDevicePixelRatio(widget.devicePixelRatioF());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(widget.palette().color(QPalette::PlaceholderText));
    painter.setBrush(QColor(QString::fromStdWString(code)));
    painter.drawRoundedRect(QRectF(0.5, 0.5, kSide - 1, kSide - 1), 3, 3);
    return picture;
}

void ColourMenu::add(const std::wstring& code)
{
    QAction* action =
        addAction(swatch(code, *this), QString::fromStdWString(ColourCommandInput::titleOf(code)));
    connect(action, &QAction::triggered, this, [this, code] { m_choose(code); });
    if (code != m_current)
        return;
    QFont bold = font();
    bold.setBold(true);
    action->setFont(bold);
}

void ColourMenu::fill()
{
    clear();
    m_current = m_ask();
    for (const ColourCommandInput::Swatch& each : ColourCommandInput::swatches())
        add(each.code);
    if (const std::vector<std::wstring> recent = recentColours(); !recent.empty()) {
        addSeparator();
        for (const std::wstring& code : recent)
            add(code);
    }
    addSeparator();
    connect(addAction(told("SwatchOther", "More...")), &QAction::triggered, this, &ColourMenu::askForAny);
    connect(addAction(told("SwatchNone", "None of Its Own")), &QAction::triggered, this,
            [this] { m_choose({}); });
    markLetters(*this);
}

// After the event, which may close and destroy the menu that contains this one.
void ColourMenu::askForAny()
{
    QTimer::singleShot(0, qApp, [choose = m_choose, now = m_current] {
        auto* dialog =
            new QColorDialog(now.empty() ? QColor(Qt::white) : QColor(QString::fromStdWString(now)),
                             QApplication::activeWindow());
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setOption(QColorDialog::DontUseNativeDialog);
        dialog->setWindowTitle(told("SwatchTitle", "Colour"));
        connect(dialog, &QColorDialog::colorSelected, qApp, [choose](const QColor& colour) {
            const std::wstring code = colour.name().toStdWString();
            remember(code);
            choose(code);
        });
        dialog->open();
    });
}

} // namespace Vu
