// Whether everything to be read, pressed and filled in stands out from its surroundings, and the keyboard
// focus is visible: in pictures of the window as drawn, in the light and the dark palette.

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>

using namespace Vu;

namespace {

constexpr double kOfTexts = 4.5, kOfFrames = 3;

double luminance(QRgb colour)
{
    const auto channel = [](int value) {
        const double v = value / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(qRed(colour)) + 0.7152 * channel(qGreen(colour)) +
           0.0722 * channel(qBlue(colour));
}

double contrast(QRgb one, QRgb other)
{
    const double a = luminance(one) + 0.05, b = luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

double contrast(const QColor& one, const QColor& other)
{
    return contrast(one.rgb(), other.rgb());
}

/// The most frequent colour of the picture.
QRgb groundOf(const QImage& picture)
{
    std::map<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y) | 0xff000000];
    return std::ranges::max_element(counts, {}, [](const auto& each) { return each.second; })->first;
}

double strongest(const QImage& picture)
{
    const QRgb ground = groundOf(picture);
    double most = 1;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            most = std::max(most, contrast(picture.pixel(x, y), ground));
    return most;
}

/// The widget as the user sees it, with a margin of `around` pixels.
QImage seen(const QWidget* widget, int around = 0)
{
    QWidget* window = widget->window();
    const QRect place = QRect(widget->mapTo(window, QPoint()), widget->size())
                            .adjusted(-around, -around, around, around)
                            .intersected(window->rect());
    return window->grab(place).toImage();
}

/// The contrast of the frame where a line from the left meets it.
double frameOf(const QWidget* control)
{
    constexpr int kAround = 3, kWithin = 14;
    const QImage picture = seen(control, kAround);
    const int y = picture.height() / 2;
    const QRgb outside = picture.pixel(0, y);
    double most = 1;
    for (int x = 0; x < kAround + kWithin && x < picture.width(); ++x)
        most = std::max(most, contrast(picture.pixel(x, y), outside));
    return most;
}

/// Pixels that contrast with what they were before.
int changed(const QImage& before, const QImage& after)
{
    int count = 0;
    for (int y = 0; y < std::min(before.height(), after.height()); ++y)
        for (int x = 0; x < std::min(before.width(), after.width()); ++x)
            count += contrast(before.pixel(x, y), after.pixel(x, y)) >= kOfFrames;
    return count;
}

std::string nameOf(const QWidget* widget)
{
    return std::string(widget->metaObject()->className()) + " " + widget->objectName().toStdString() + " \"" +
           widget->accessibleName().toStdString() + '"';
}

void run(const std::wstring& line)
{
    const Vs::TextCommandResult result = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
    EXPECT_EQ(result.first, 0u) << Vs::Strings::narrow(line + L": " + result.second);
    Application::get()->flushDeferredTasks();
    QTest::qWait(50);
}

class ContrastTest : public testing::TestWithParam<const wchar_t*>
{
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "NOTICE: no display to show a window on";
        UIBaseOptionGroup::get()->theme(GetParam());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window(), 60000));
    }
    void TearDown() override { UIBaseOptionGroup::get()->reset(); }

    static QWidget* window() { return WorkspaceWindow::activeWorkspaceWindow()->widget(); }

    /// Opens the preferences, and checks them.
    static void inPreferences(const std::function<void(QDialog&)>& look)
    {
        bool looked = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                timer.stop();
                QTest::qWait(50);
                look(*dialog);
                looked = true;
                dialog->reject();
            }
        });
        timer.start(50);
        Vu::Display::get()->showPreferences(window());
        EXPECT_TRUE(looked);
    }

    static void onHomeScreen(const std::function<void()>& look)
    {
        run(L"Commands.Start ManagementShellCommand");
        ASSERT_FALSE(Vs::DocumentMgr::get()->activeAsset());
        look();
        run(L"Commands.Start CycleOpenDocumentsCommand");
        ASSERT_TRUE(Vs::DocumentMgr::get()->activeAsset());
    }

    template <class Widget>
    static std::vector<Widget*> visible(const QWidget& root)
    {
        std::vector<Widget*> all;
        for (Widget* each : root.findChildren<Widget*>())
            if (each->isVisible() && each->isEnabled() && !each->visibleRegion().isEmpty())
                all.push_back(each);
        return all;
    }

    static void expectFrames(const QWidget& root)
    {
        for (QWidget* each : visible<QWidget>(root)) {
            const bool hasFrame =
                (qobject_cast<QLineEdit*>(each) && !qobject_cast<QAbstractSpinBox*>(each->parentWidget()) &&
                 !qobject_cast<QComboBox*>(each->parentWidget())) ||
                qobject_cast<QComboBox*>(each) || qobject_cast<QAbstractSpinBox*>(each) ||
                qobject_cast<QCheckBox*>(each) || qobject_cast<QRadioButton*>(each) ||
                qobject_cast<QPushButton*>(each);
            if (hasFrame) {
                EXPECT_GE(frameOf(each), kOfFrames) << nameOf(each);
            }
        }
    }

    /// Each button's icon separately: a twentieth of its pixels as strong as a frame.
    static void expectIcons(const QWidget& root)
    {
        constexpr int kShare = 20;
        int looked = 0;
        for (const auto* button : visible<QAbstractButton>(root)) {
            const QSize size = button->iconSize();
            const QPoint corner = button->rect().center() - QRect(QPoint(), size).center();
            if (button->icon().isNull() || !button->text().isEmpty() ||
                !button->rect().contains(QRect(corner, size)))
                continue;
            const QImage picture =
                button->window()->grab(QRect(button->mapTo(button->window(), corner), size)).toImage();
            const QRgb ground = groundOf(picture);
            int strong = 0;
            for (int y = 0; y < picture.height(); ++y)
                for (int x = 0; x < picture.width(); ++x)
                    strong += contrast(picture.pixel(x, y), ground) >= kOfFrames;
            EXPECT_GE(strong * kShare, picture.width() * picture.height()) << nameOf(button);
            ++looked;
        }
        EXPECT_GT(looked, 0);
    }

    static void expectTexts(const QWidget& root)
    {
        for (const QLabel* label : visible<QLabel>(root))
            if (label->text().size() > 1) {
                EXPECT_GE(strongest(seen(label)), kOfTexts)
                    << nameOf(label) << ": " << label->text().toStdString();
            }
        // Within the frames.
        constexpr int kFrame = 4;
        for (const QLineEdit* line : visible<QLineEdit>(root))
            if (!line->hasFocus() && line->text().isEmpty() && !line->placeholderText().isEmpty()) {
                const QImage picture = seen(line);
                const QImage within = picture.copy(picture.rect().adjusted(kFrame, kFrame, -kFrame, -kFrame));
                EXPECT_GE(strongest(within), kOfTexts) << nameOf(line);
            }
    }

    /// The first few of each kind of widget.
    static void expectFocus(QWidget& root)
    {
        constexpr int kOfAKind = 3, kLeastPixels = 20;
        std::map<std::string, int> looked;
        QApplication::setActiveWindow(&root);
        for (QWidget* each : visible<QWidget>(root)) {
            if (!(each->focusPolicy() & Qt::TabFocus) || each->focusProxy() ||
                looked[nameOf(each)]++ >= kOfAKind)
                continue;
            if (QWidget* focus = QApplication::focusWidget())
                focus->clearFocus();
            QTest::qWait(10);
            const QImage before = seen(each, 3);
            each->setFocus(Qt::TabFocusReason);
            // Once the keyboard is used, it shows its focus.
            each->window()->setAttribute(Qt::WA_KeyboardFocusChange);
            QTest::qWait(10);
            EXPECT_GE(changed(before, seen(each, 3)), kLeastPixels) << nameOf(each);
        }
    }
};

/// One of each, on a background of the window's colour.
struct Controls
{
    QWidget panel;
    Controls()
    {
        auto* column = new QVBoxLayout(&panel);
        auto* combo = new QComboBox;
        combo->addItem(QString());
        for (QWidget* each :
             std::initializer_list<QWidget*>{new QLineEdit, new QSpinBox, combo, new QCheckBox,
                                             new QRadioButton, new QPushButton, new QToolButton})
            column->addWidget(each);
        panel.show();
        static_cast<void>(QTest::qWaitForWindowExposed(&panel, 60000));
    }
};

} // namespace

TEST_P(ContrastTest, TextsAndFramesOfThePaletteStandOutFromAllItsGrounds)
{
    const QPalette colours = QApplication::palette();
    for (const QPalette::ColorRole ground :
         {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button}) {
        for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                               QPalette::PlaceholderText, QPalette::Link})
            EXPECT_GE(contrast(colours.color(text), colours.color(ground)), kOfTexts)
                << text << " on " << ground;
        for (const QPalette::ColorRole frame : {QPalette::Dark, QPalette::Highlight})
            EXPECT_GE(contrast(colours.color(frame), colours.color(ground)), kOfFrames)
                << frame << " on " << ground;
    }
    EXPECT_GE(contrast(colours.color(QPalette::HighlightedText), colours.color(QPalette::Highlight)),
              kOfTexts);
    EXPECT_GE(contrast(colours.color(QPalette::ToolTipText), colours.color(QPalette::ToolTipBase)), kOfTexts);
}

TEST_P(ContrastTest, EachKindOfControlHasAFrameThatStandsOut)
{
    const Controls controls;
    expectFrames(controls.panel);
    expectFrames(*window());
    inPreferences([](QDialog& dialog) { expectFrames(dialog); });
}

TEST_P(ContrastTest, IconsStandOutFromTheirButtons)
{
    expectIcons(*window());
}

TEST_P(ContrastTest, TextsAreReadableOnTheHomeScreenInADocumentAndInTheirDialogs)
{
    expectTexts(*window());
    inPreferences([](QDialog& dialog) { expectTexts(dialog); });
    onHomeScreen([] { expectTexts(*window()); });
    auto* bell = window()->findChild<QToolButton*>(QStringLiteral("bell"));
    ASSERT_NE(bell, nullptr);
    bell->click();
    QTest::qWait(50);
    const auto* panel = window()->findChild<QWidget*>(QStringLiteral("notificationPanel"));
    ASSERT_TRUE(panel && panel->isVisible());
    EXPECT_FALSE(visible<QLabel>(*panel).empty());
    expectTexts(*panel);
    bell->click();
}

TEST_P(ContrastTest, TheKeyboardIsSeenWhereverItIs)
{
    Controls controls;
    expectFocus(controls.panel);
    inPreferences([](QDialog& dialog) { expectFocus(dialog); });
    expectFocus(*window());
    onHomeScreen([] { expectFocus(*window()); });
}

INSTANTIATE_TEST_SUITE_P(Themes, ContrastTest, testing::Values(L"light", L"dark"), [](const auto& each) {
    return Vs::Strings::narrow(each.param) == "light" ? "Light" : "Dark";
});
