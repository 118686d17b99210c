#pragma once

#include "Tests/Support/Process.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QProcess>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace UiTests {

/// One object in a window, as assistive technology sees it: queried again over the bus with each call.
class SpokenThing
{
public:
    SpokenThing(QDBusConnection bus, QString service, QString path);

    std::string name() const { return property("Accessible", "Name"); }
    std::string description() const { return property("Accessible", "Description"); }
    std::string role() const; ///< As "push button".
    bool is(int state) const; ///< One of those below.
    std::vector<SpokenThing> children() const;

    std::vector<std::string> actions() const;
    /// Doesn't wait for the action, which may open a dialog. False if there is no such action.
    [[nodiscard]] bool act(const std::string& action) const;
    void focus() const;
    void pressSecondButton() const;           ///< With a real mouse, in its middle.
    std::string text() const;                 ///< Its text.
    void type(const std::string& text) const; ///< Replaces the present text.

    /// Numbers of states, as on the bus.
    static constexpr int kChecked = 4, kFocusable = 11, kFocused = 12, kSelected = 23, kShowing = 25;

    friend bool operator==(const SpokenThing& one, const SpokenThing& other)
    {
        return one.m_service == other.m_service && one.m_path == other.m_path;
    }

private:
    QDBusMessage call(const char* interface, const char* method, const QVariantList& arguments = {}) const;
    std::string property(const char* interface, const char* name) const;

    QDBusConnection m_bus;
    QString m_service, m_path;
};

/// The real program in a window, and what assistive technology sees of it. Needs a display and a session bus
/// on which the services of at-spi2-core can be started.
class SpokenProgram
{
public:
    /// Adds a profile of its own to the program's arguments; the lines run at its start.
    explicit SpokenProgram(const std::vector<std::string>& lines, const QStringList& environment = {});
    ~SpokenProgram();

    static bool canRun(); ///< Whether the accessibility bus exists.
    bool started() const { return m_program.has_value(); }
    std::string output() { return m_process.readAll().toStdString(); }
    qint64 process() const { return m_process.processId(); }

    using Test = std::function<bool(const SpokenThing&)>;
    struct Found
    {
        SpokenThing thing;
        std::vector<std::string> above; ///< Roles and names, from the window downwards.
        std::string place() const;      ///< Those and its own, in one line.
    };
    /// Everything visible, in the windows' order.
    std::vector<Found> shown() const;
    /// The first visible one that passes; waits for it.
    std::optional<SpokenThing> find(const Test& test) const;
    std::optional<SpokenThing> find(const std::string& role, const std::string& name) const;

    /// A key by its xdotool name, for whatever has the focus.
    void key(const QString& key) const;
    /// Focuses the window, since there may be no window manager to do so.
    void activate() const;

private:
    void walk(const SpokenThing& thing, const std::vector<std::string>& above,
              std::vector<Found>& found) const;

    TestSupport::ScratchFolder m_profile;
    QProcess m_process;
    std::optional<SpokenThing> m_program;
};

} // namespace UiTests
