// The desktop's animation setting, and how the program follows it.

#include "UI/Base/Window/DesktopMotion.h"

#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "UI/Base/Program/Private/ReducedMotion.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProgressBar>
#include <QStyle>
#include <QtTest/QTest>

#include <boost/filesystem/operations.hpp>

#include <cstdlib>
#include <gtest/gtest.h>

using namespace Vu;

namespace {

const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kSpace = QStringLiteral("org.gnome.desktop.interface");
const QString kKey = QStringLiteral("enable-animations");

/// The settings portal of a desktop, as far as it is queried.
class Portal : public QDBusVirtualObject
{
public:
    Portal() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal")))
    {
        EXPECT_TRUE(m_bus.registerVirtualObject(kPath, this));
        EXPECT_TRUE(m_bus.registerService(kService));
    }
    ~Portal() override
    {
        m_bus.unregisterService(kService);
        m_bus.unregisterObject(kPath);
    }

    bool animates = true;
    void change(const QString& key, bool value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(kPath, kInterface, QStringLiteral("SettingChanged"));
        signal << kSpace << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (message.interface() != kInterface || message.member() != QLatin1String("Read") ||
            message.arguments() != QVariantList{kSpace, kKey})
            return false;
        const QDBusVariant inner(animates);
        return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    }

private:
    QDBusConnection m_bus;
};

bool becomesReduced(bool value)
{
    return QTest::qWaitFor([value] { return motionIsReduced() == value; }, 10000);
}

class DesktopMotionTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "no display is set";
    }
    void TearDown() override
    {
        UIBaseOptionGroup::get()->reset();
        desktopReducesMotion(false);
    }
};

} // namespace

TEST_F(DesktopMotionTest, TheSettingOfTheDesktopHoldsAtTheStartAndWhenItChanges)
{
    Portal portal;
    portal.animates = false;
    const DesktopMotion motion(nullptr);
    EXPECT_TRUE(becomesReduced(true));
    const auto movesByItself = [] {
        return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
    };
    EXPECT_FALSE(movesByItself());
    portal.change(QStringLiteral("cursor-blink"), true);
    portal.change(kKey, true);
    EXPECT_TRUE(becomesReduced(false));
    EXPECT_TRUE(movesByItself());
    portal.change(kKey, false);
    EXPECT_TRUE(becomesReduced(true));
}

TEST_F(DesktopMotionTest, WithoutAPortalTheFileOfTheDesktopsHolds)
{
    const boost::filesystem::path folder = std::getenv("XDG_CONFIG_HOME");
    const boost::filesystem::path file = folder / "gtk-3.0/settings.ini";
    boost::filesystem::create_directories(file.parent_path());
    TestSupport::overwrite(file, "[Settings]\ngtk-theme-name=Adwaita\ngtk-enable-animations=0\n");
    EXPECT_TRUE((static_cast<void>(DesktopMotion(nullptr)), motionIsReduced()));
    TestSupport::overwrite(file, "[Settings]\ngtk-enable-animations=true\n");
    EXPECT_FALSE((static_cast<void>(DesktopMotion(nullptr)), motionIsReduced()));
    boost::filesystem::remove_all(file.parent_path());
    EXPECT_FALSE((static_cast<void>(DesktopMotion(nullptr)), motionIsReduced()));
}

TEST_F(DesktopMotionTest, TheOptionOfTheProgramTakesMotionAwayWhateverTheDesktopSays)
{
    UIBaseOptionGroup::get()->animateCamera(false);
    EXPECT_TRUE(motionIsReduced());
    UIBaseOptionGroup::get()->animateCamera(true);
    desktopReducesMotion(true);
    EXPECT_TRUE(motionIsReduced());
}
