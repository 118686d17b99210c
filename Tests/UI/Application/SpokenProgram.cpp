#include "Tests/UI/Application/SpokenProgram.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVariant>
#include <QTest>

#include <algorithm>

namespace UiTests {
namespace {

constexpr int kPatience = 20000; ///< In milliseconds, on a loaded machine.
constexpr const char* kPrefix = "org.a11y.atspi.";

struct Reference
{
    QString service;
    QDBusObjectPath path;
};

const QDBusArgument& operator>>(const QDBusArgument& argument, Reference& reference)
{
    argument.beginStructure();
    argument >> reference.service >> reference.path;
    argument.endStructure();
    return argument;
}

/// The private bus for assistive technology; not connected if there is none.
QDBusConnection spokenBus()
{
    static const QString address = [] {
        const QDBusMessage reply = QDBusConnection::sessionBus().call(
            QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                           QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
        return reply.arguments().value(0).toString();
    }();
    static const QString kName = QStringLiteral("spoken");
    return address.isEmpty() ? QDBusConnection(kName) : QDBusConnection::connectToBus(address, kName);
}

SpokenThing registry()
{
    return {spokenBus(), QStringLiteral("org.a11y.atspi.Registry"),
            QStringLiteral("/org/a11y/atspi/accessible/root")};
}

} // namespace

SpokenThing::SpokenThing(QDBusConnection bus, QString service, QString path)
    : m_bus(std::move(bus)), m_service(std::move(service)), m_path(std::move(path))
{
}

QDBusMessage SpokenThing::call(const char* interface, const char* method, const QVariantList& arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        m_service, m_path, QLatin1String(kPrefix) + QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, kPatience);
}

std::string SpokenThing::property(const char* interface, const char* name) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        m_service, m_path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << QString(QLatin1String(kPrefix) + QLatin1String(interface)) << QString(QLatin1String(name));
    const QDBusReply<QDBusVariant> reply = m_bus.call(message, QDBus::Block, kPatience);
    return reply.value().variant().toString().toStdString();
}

std::string SpokenThing::role() const
{
    return call("Accessible", "GetRoleName").arguments().value(0).toString().toStdString();
}

bool SpokenThing::is(int state) const
{
    const QDBusMessage reply = call("Accessible", "GetState");
    QList<uint> words;
    if (reply.type() == QDBusMessage::ReplyMessage)
        reply.arguments().value(0).value<QDBusArgument>() >> words;
    constexpr int kBits = 32;
    return words.value(state / kBits) >> state % kBits & 1;
}

std::vector<SpokenThing> SpokenThing::children() const
{
    std::vector<SpokenThing> children;
    const QDBusMessage reply = call("Accessible", "GetChildren");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return children;
    const auto list = reply.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Reference reference;
        list >> reference;
        if (!reference.path.path().endsWith(QLatin1String("/null")))
            children.emplace_back(m_bus, reference.service, reference.path.path());
    }
    list.endArray();
    return children;
}

std::vector<std::string> SpokenThing::actions() const
{
    std::vector<std::string> names;
    const QDBusMessage reply = call("Action", "GetActions");
    if (reply.type() != QDBusMessage::ReplyMessage)
        return names;
    const auto list = reply.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name, description, keys;
        list.beginStructure();
        list >> name >> description >> keys;
        list.endStructure();
        names.push_back(name.toStdString());
    }
    list.endArray();
    return names;
}

bool SpokenThing::act(const std::string& action) const
{
    const std::vector<std::string> all = actions();
    const auto found = std::ranges::find(all, action);
    if (found == all.end())
        return false;
    QDBusMessage message = QDBusMessage::createMethodCall(
        m_service, m_path, QStringLiteral("org.a11y.atspi.Action"), QStringLiteral("DoAction"));
    message << static_cast<int>(found - all.begin());
    return m_bus.send(message);
}

void SpokenThing::focus() const
{
    call("Component", "GrabFocus");
}

void SpokenThing::pressSecondButton() const
{
    const QDBusMessage reply = call("Component", "GetExtents", {0u});
    int left = 0, top = 0, width = 0, height = 0;
    if (reply.type() == QDBusMessage::ReplyMessage) {
        const auto place = reply.arguments().value(0).value<QDBusArgument>();
        place.beginStructure();
        place >> left >> top >> width >> height;
        place.endStructure();
    }
    QProcess::execute(QStringLiteral("xdotool"),
                      {QStringLiteral("mousemove"), QString::number(left + width / 2),
                       QString::number(top + height / 2), QStringLiteral("click"), QStringLiteral("3")});
}

std::string SpokenThing::text() const
{
    return call("Text", "GetText", {0, -1}).arguments().value(0).toString().toStdString();
}

void SpokenThing::type(const std::string& text) const
{
    call("EditableText", "SetTextContents", {QString::fromStdString(text)});
}

bool SpokenProgram::canRun()
{
    return qEnvironmentVariableIsSet("DISPLAY") && qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") &&
           spokenBus().isConnected();
}

SpokenProgram::SpokenProgram(const std::vector<std::string>& lines, const QStringList& environment)
{
    QStringList arguments{QStringLiteral("--profile-dir"), QString::fromStdString(m_profile.path().string())};
    for (const std::string& line : lines)
        arguments << QStringLiteral("--command") << QString::fromStdString(line);
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    for (const QString& variable : environment)
        variables.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    m_process.setProcessEnvironment(variables);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QString::fromStdString((TestSupport::runningTree() / "bin/quillet").string()), arguments);
    const auto itsWindow = [&] {
        for (const SpokenThing& program : registry().children())
            for (const SpokenThing& window : program.children())
                if (window.is(SpokenThing::kShowing))
                    m_program = program;
        return m_program.has_value();
    };
    static_cast<void>(QTest::qWaitFor(itsWindow, kPatience));
}

SpokenProgram::~SpokenProgram()
{
    m_process.kill();
    m_process.waitForFinished();
    // The next one must be the only one.
    static_cast<void>(QTest::qWaitFor([] { return registry().children().empty(); }, kPatience));
}

std::string SpokenProgram::Found::place() const
{
    std::string line;
    for (const std::string& each : above)
        line += each + " > ";
    return line + thing.role() + " \"" + thing.name() + '"';
}

void SpokenProgram::walk(const SpokenThing& thing, const std::vector<std::string>& above,
                         std::vector<Found>& found) const
{
    found.push_back({thing, above});
    std::vector<std::string> here = above;
    here.push_back(thing.role() + ' ' + thing.name());
    for (const SpokenThing& child : thing.children())
        if (child.is(SpokenThing::kShowing))
            walk(child, here, found);
}

std::vector<SpokenProgram::Found> SpokenProgram::shown() const
{
    std::vector<Found> found;
    if (m_program)
        for (const SpokenThing& window : m_program->children())
            if (window.is(SpokenThing::kShowing))
                walk(window, {}, found);
    return found;
}

std::optional<SpokenThing> SpokenProgram::find(const Test& test) const
{
    std::optional<SpokenThing> result;
    const auto isThere = [&] {
        for (const Found& each : shown())
            if (!result && test(each.thing))
                result = each.thing;
        return result.has_value();
    };
    static_cast<void>(QTest::qWaitFor(isThere, kPatience));
    return result;
}

std::optional<SpokenThing> SpokenProgram::find(const std::string& role, const std::string& name) const
{
    return find([&](const SpokenThing& thing) { return thing.role() == role && thing.name() == name; });
}

void SpokenProgram::activate() const
{
    QProcess::execute(QStringLiteral("xdotool"),
                      {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"),
                       QString::number(m_process.processId()), QStringLiteral("windowfocus")});
}

void SpokenProgram::key(const QString& key) const
{
    activate();
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
}

} // namespace UiTests
