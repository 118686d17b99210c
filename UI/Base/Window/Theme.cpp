#include "UI/Base/Window/Theme.h"

#include "Server/Base/ResourceMgr.h"
#include "Server/Scene/EnvironmentManager.h"
#include "UI/Base/Program/IStyleCollector.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Window/ProgramStyle.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QFile>
#include <QPalette>
#include <QPixmapCache>

namespace Vu {
namespace {

struct Shades
{
    QRgb window, base, alternate, button, text;
    QRgb quiet;    ///< Of secondary text: a contrast of 4.5 with all backgrounds, like any text.
    QRgb disabled; ///< Of text that only has to be readable in passing.
    QRgb line;     ///< Of separators, which needn't be visible to be used.
    QRgb frame;    ///< Of the frames of controls: a contrast of 3 with all backgrounds.
    QRgb accent, onAccent, error;
};

constexpr Shades kLight = {.window = 0xfff4f5f7,
                           .base = 0xffffffff,
                           .alternate = 0xfff8f9fa,
                           .button = 0xfff4f5f7,
                           .text = 0xff1f2429,
                           .quiet = 0xff626a72,
                           .disabled = 0xff7b848d,
                           .line = 0xffd3d7dc,
                           .frame = 0xff757d85,
                           .accent = 0xff1c69b8,
                           .onAccent = 0xffffffff,
                           .error = 0xffb3261e};
constexpr Shades kDark = {.window = 0xff2a2d31,
                          .base = 0xff1f2225,
                          .alternate = 0xff25282b,
                          .button = 0xff34383d,
                          .text = 0xffe6e8ea,
                          .quiet = 0xffa0a8b0,
                          .disabled = 0xff8d959d,
                          .line = 0xff44494f,
                          .frame = 0xff868e96,
                          .accent = 0xff66adef,
                          .onAccent = 0xff10151a,
                          .error = 0xffff8a80};

QPalette paletteOf(const Shades& shades)
{
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, QRgb colour) {
        palette.setColor(role, QColor::fromRgba(colour));
    };
    set(QPalette::Window, shades.window);
    set(QPalette::WindowText, shades.text);
    set(QPalette::Base, shades.base);
    set(QPalette::AlternateBase, shades.alternate);
    set(QPalette::Text, shades.text);
    set(QPalette::PlaceholderText, shades.quiet);
    set(QPalette::Button, shades.button);
    set(QPalette::ButtonText, shades.text);
    set(QPalette::BrightText, shades.onAccent);
    set(QPalette::ToolTipBase, shades.base);
    set(QPalette::ToolTipText, shades.text);
    set(QPalette::Highlight, shades.accent);
    set(QPalette::HighlightedText, shades.onAccent);
    set(QPalette::Link, shades.accent);
    set(QPalette::Mid, shades.line);
    set(QPalette::Midlight, shades.line);
    set(QPalette::Dark, shades.frame);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor::fromRgba(shades.disabled));
    return palette;
}

constexpr const char* kStyleSheet = R"(
QToolTip { border: 1px solid palette(mid); padding: 4px; }
QToolButton[flat="true"] { border: 1px solid transparent; border-radius: 4px; padding: 3px; }
QToolButton[flat="true"]:hover { background: palette(midlight); }
QToolButton[flat="true"]:pressed, QToolButton[flat="true"]:checked, QToolButton[flat="true"]:focus { border-color: palette(highlight); }
QToolButton[flat="true"]::menu-indicator { image: none; }
QToolButton[flat="true"][popupMode="1"] { padding-right: 16px; }
QToolButton[flat="true"]::menu-button { border: none; border-radius: 4px; width: 13px; }
QToolButton[flat="true"]::menu-button:hover { background: palette(mid); }
QToolButton#bell { border: 1px solid transparent; border-radius: 4px; padding: 1px 6px; }
QToolButton#bell:hover { border-color: palette(dark); }
QToolButton#bell:focus { border-color: palette(highlight); }
QToolButton[status="true"] { border: 1px solid transparent; border-radius: 4px; padding: 1px 6px; }
QToolButton[status="true"]:hover { border-color: palette(dark); }
QToolButton[status="true"]:focus { border-color: palette(highlight); }
QToolButton[status="true"]::menu-indicator { image: none; }
QLabel#recording { color: @error; font-weight: bold; }
QLabel#prompt { color: palette(link); }
QFrame#commandAnswer { background: palette(base); border: 1px solid palette(mid); border-radius: 4px; }
QFrame#notificationPanel { background: palette(window); border: 1px solid palette(mid); }
QWidget#notificationList { background: palette(base); }
QFrame#notification { background: palette(base); border: 1px solid palette(base); border-bottom-color: palette(mid); }
QFrame#notification:focus { border-color: palette(highlight); }
QFrame#toast { background: palette(base); border: 1px solid palette(mid); border-radius: 8px; }
QLabel#notificationTitle { font-weight: bold; }
QLabel#notificationFile { color: palette(placeholder-text); }
QLabel#notificationClick { color: palette(link); }
QToolButton#notificationAction { border: 1px solid palette(dark); border-radius: 4px; padding: 3px 10px; background: palette(button); }
QToolButton#notificationAction:hover { border-color: palette(highlight); }
QToolButton#notificationAction:focus { border: 2px solid palette(highlight); padding: 2px 9px; }
QFrame#strip { border: none; }
QFrame#toolbarLine { border: none; border-bottom: 1px solid palette(mid); }
QFrame#tabStrip { border: none; border-bottom: 1px solid palette(mid); background: palette(window); }
QTabBar#documentTabs { border: none; }
QTabBar#documentTabs::tab { border: 1px solid transparent; border-right-color: palette(mid); padding: 4px 4px 4px 10px; background: palette(window); color: palette(window-text); }
QTabBar#documentTabs::tab:selected { border-top: 2px solid palette(highlight); padding-top: 3px; background: palette(base); }
QTabBar#documentTabs::tab:hover:!selected { background: palette(midlight); }
QToolButton#tabList::menu-indicator { image: none; }
QFrame#areaHead { border: none; border-bottom: 1px solid palette(mid); background: palette(window); }
QFrame#areaPanel { border: none; }
QFrame#areaPanel[floating="true"] { border: 1px solid palette(mid); background: palette(window); }
QFrame#collapseBar { border: none; background: palette(window); }
QToolButton#panelMenu::menu-indicator, QToolButton#chevron::menu-indicator { image: none; }
QFrame#commandBox { border: none; border-top: 1px solid palette(mid); }
QFrame#commandPanel { background: palette(window); border: 1px solid palette(mid); border-radius: 8px; }
QFrame#tourCard { background: palette(window); border: 1px solid palette(highlight); border-radius: 8px; }
QFrame#keysOverlay, QFrame#searchPalette { background: palette(window); border: 1px solid palette(highlight); border-radius: 8px; }
QLabel#keyText { color: palette(link); }
QFrame#panelHead { border: none; border-bottom: 1px solid palette(mid); }
QToolButton#inputGroup { border: 1px solid transparent; border-radius: 4px; padding: 2px 0; text-align: left; font-weight: bold; }
QToolButton#inputGroup:hover { background: palette(midlight); }
QToolButton#inputGroup:focus { border-color: palette(highlight); }
QLineEdit#inputLine { padding: 2px 4px; border: 1px solid palette(dark); border-radius: 4px; background: palette(base); }
QLineEdit#inputLine:focus { border: 2px solid palette(highlight); padding: 1px 3px; }
QLineEdit#inputLine:disabled, QLineEdit#inputLine[readOnly="true"] { background: palette(window); }
QLineEdit[failed="true"], QLineEdit#inputLine[failed="true"] { border-color: @error; }
QLineEdit[readOnly="true"] { background: palette(window); }
QLabel#propertiesHead { font-weight: bold; }
QToolButton#propertyColour { border: 1px solid palette(dark); border-radius: 4px; padding: 3px 6px; background: palette(base); text-align: left; }
QToolButton#propertyColour:hover { border-color: palette(highlight); }
QToolButton#propertyColour:focus { border: 2px solid palette(highlight); padding: 2px 5px; }
QToolButton#propertyColour::menu-indicator { subcontrol-origin: padding; subcontrol-position: right center; right: 4px; }
QToolButton#propertyColour:disabled { background: palette(window); }
QPushButton#inputSelection { padding: 3px 6px; border: 1px solid palette(dark); border-radius: 4px; background: palette(base); text-align: left; outline: none; }
QPushButton#inputSelection:checked { border-color: palette(highlight); }
QPushButton#inputSelection:focus { border: 2px solid palette(highlight); padding: 2px 5px; }
QPushButton#inputSelection:disabled { background: palette(window); }
QLabel#inputMark { color: palette(base); background: @error; border-radius: 7px; min-width: 14px; max-width: 14px; min-height: 14px; max-height: 14px; font-weight: bold; }
QFrame#hud, QLabel#canvasHint { background: palette(window); border: 1px solid palette(mid); border-radius: 8px; }
QLabel#emptyText { background: palette(window); border: 1px solid palette(mid); border-radius: 8px; padding: 10px 18px; }
QLineEdit#commandLine { padding: 4px 6px; border: 1px solid palette(dark); border-radius: 4px; background: palette(base); }
QLineEdit#commandLine:focus { border: 2px solid palette(highlight); padding: 3px 5px; }
QLineEdit#commandLine[failed="true"] { border-color: @error; }
QTreeView { border: 2px solid transparent; }
QTreeView:focus { border-color: palette(highlight); }
QTreeView::item { padding: 2px 0; }
QPlainTextEdit#commandOutput { border: none; background: palette(base); }
QSplitter::handle { background: palette(mid); }
QSplitter::handle:horizontal { width: 1px; }
QSplitter::handle:vertical { height: 1px; }
QStatusBar { border-top: 1px solid palette(mid); }
QStatusBar::item { border: none; }
)";

bool isDark(const QPalette& palette)
{
    constexpr int kMiddle = 128;
    return palette.color(QPalette::Window).lightness() < kMiddle;
}

bool wantsDark()
{
    // The desktop's own palette shows which one its user prefers; later it is the program's.
    static const bool desktopIsDark = isDark(QApplication::palette());
    const std::wstring theme = UIBaseOptionGroup::get()->theme();
    return theme == L"dark" || (theme != L"light" && desktopIsDark);
}

class ThemeOfOption : public Vs::OptionEventSite
{
    void optionChanged(Vs::OptionEvent* event) override
    {
        if (event->name() == "theme")
            applyTheme();
    }
};

} // namespace

void applyTheme()
{
    if (!qApp)
        return;
    const bool dark = wantsDark();
    QApplication::setStyle(new ProgramStyle);
    QApplication::setPalette(paletteOf(dark ? kDark : kLight));
    // A style sheet knows only the colours of the palette.
    QString sheet = QString::fromLatin1(kStyleSheet).replace(QLatin1String("@error"), errorColour().name());
    // These keep the palette they had first.
    sheet += QStringLiteral("QToolTip { color: %1; background: %2; }")
                 .arg(QApplication::palette().color(QPalette::ToolTipText).name(),
                      QApplication::palette().color(QPalette::ToolTipBase).name());
    std::vector<Vs::Resource*> sheets;
    std::vector<Vs::ImageResource*> images;
    for (IStyleCollector* collector : IStyleCollector::collectors()) {
        collector->collectStyleSheets(sheets);
        collector->collectImages(images);
    }
    for (const Vs::Resource* resource : sheets) {
        QFile file(QString::fromStdWString(resource->localPath()));
        if (file.open(QIODevice::ReadOnly))
            sheet += QString::fromUtf8(file.readAll());
    }
    for (const Vs::ImageResource* image : images) {
        const QString path = QString::fromStdWString(image->localPath());
        const QImage png = pngFromFile(image->localPath());
        QPixmapCache::insert(path, png.isNull() ? QPixmap(path) : QPixmap::fromImage(png));
    }
    qApp->setStyleSheet(sheet);
    // Views follow, unless the user has chosen their environment.
    Vs::Scene::EnvironmentManager::getEnvManager()->usualEnvironmentID(dark ? L"DarkSky" : L"PhotoBooth");
    WorkspaceWindow::invalidate(kInvalidateScene);
}

void followTheme()
{
    applyTheme();
    static auto* const site = [] {
        auto* made = new ThemeOfOption;
        UIBaseOptionGroup::get()->subscribe(made);
        return made;
    }();
    static_cast<void>(site);
}

bool isDark()
{
    return isDark(QApplication::palette());
}

QColor errorColour()
{
    return QColor::fromRgba((isDark() ? kDark : kLight).error);
}

} // namespace Vu
