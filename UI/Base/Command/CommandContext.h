#pragma once

#include "UI/Base/Command/CommandTypes.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace Vs {
class Asset;
class SerializableObject;
class UniqueString;
} // namespace Vs

namespace Vu {

class AssetSession;
class CommandMgr;
class Shell;
class Workspace;

/// How a command was called: from where, by which route, with which arguments. A value, cheap to copy: copies
/// share their arguments until one of them is changed.
class CommandContext
{
public:
    /// The forms in which `argument` returns a value.
    enum class EArgType {
        Object = 0, ///< `Vs::SerializableObject*`
        Int = 1,    ///< `int`; a flag is 0 or 1
        Double = 2, ///< `double`
        String = 3, ///< `std::wstring`
    };

    /// Nothing active and no arguments.
    CommandContext();
    CommandContext(const CommandContext&);
    CommandContext(CommandContext&&) noexcept;
    CommandContext& operator=(const CommandContext&);
    CommandContext& operator=(CommandContext&&) noexcept;
    ~CommandContext();

    /// A context with what is active now: asset session, shell, workspace.
    [[nodiscard]] static CommandContext activeContext();
    /// An empty context, to copy from.
    [[nodiscard]] static const CommandContext& emptyContext();
    /// The key of every file path: "Path".
    static const Vs::UniqueString* pathArgumentName();

    /// Adds an argument, replacing one of the same key. The context shares the ownership of a
    /// reference-counted object (Vs::SharedObject); any other object belongs to someone else, and once it is
    /// gone the argument is null. A null object adds nothing.
    void addArgument(const Vs::UniqueString* key, Vs::SerializableObject* object);
    void addArgument(const Vs::UniqueString* key, std::wstring text);
    void addArgument(const Vs::UniqueString* key, const wchar_t* text)
    {
        addArgument(key, std::wstring(text));
    }
    void addArgument(const Vs::UniqueString* key, int value);
    void addArgument(const Vs::UniqueString* key, bool value) { addArgument(key, value ? 1 : 0); }
    void addArgument(const Vs::UniqueString* key, double value);
    void removeArgument(const Vs::UniqueString* key);

    /// The argument as an object; null if it is absent, none, or gone.
    Vs::SerializableObject* argument(const Vs::UniqueString* key) const;
    /// Whether an argument was an object that is gone, so that the command can't do what was intended.
    bool hasLostObject() const;

    /// Reads the argument into the variable of the type's form at `value`. Numbers convert to each other
    /// where nothing is lost, a text that is a number converts to it, and everything but an object converts
    /// to text. Returns false, with the variable unchanged, if the argument is absent or doesn't convert.
    bool argument(const Vs::UniqueString* key, EArgType type, void* value) const;

    /// The argument as text, empty if it is absent; an object gives its serialised form.
    [[nodiscard]] std::wstring argumentAsString(const Vs::UniqueString* key) const;

    [[nodiscard]] bool hasArgument(const Vs::UniqueString* key) const;
    /// The arguments in the order in which they were added.
    size_t arguments() const;
    [[nodiscard]] const Vs::UniqueString* argumentName(size_t index) const;
    [[nodiscard]] EArgType argumentType(size_t index) const;

    /// Where the command was called. Each may be null.
    AssetSession* assetSession() const { return m_assetSession; }
    void assetSession(AssetSession* session) { m_assetSession = session; }
    Shell* shell() const { return m_shell; }
    void shell(Shell* shell) { m_shell = shell; }
    Workspace* workspace() const { return m_workspace; }
    void workspace(Workspace* workspace) { m_workspace = workspace; }
    /// The session's asset, and the session's command manager.
    Vs::Asset* asset() const;
    CommandMgr* commandManager() const;

    ECommandAccessPoint commandAccessPoint() const { return m_accessPoint; }
    void accessPoint(ECommandAccessPoint point)
    {
        if (m_accessPoint != ECommandAccessPoint::Repeat)
            m_repeatedFrom = m_accessPoint;
        m_accessPoint = point;
    }
    void accessPoint(int point) { accessPoint(static_cast<ECommandAccessPoint>(point)); }
    /// Whether a person called the command with a button, a menu, keys or the mouse. A repetition counts as
    /// whatever asked for it.
    bool isByHand() const;
    /// Whether a line called it: typed, or from a transcript or a script. A repetition counts as whatever
    /// asked for it.
    bool isByLine() const;

    /// Whether the command runs inside the call that starts it (the default), or as a deferred task after the
    /// current event. A deferred run returns an empty status to its caller; its errors become alerts.
    bool executeImmediately() const { return m_executeImmediately; }
    void executeImmediately(bool value) { m_executeImmediately = value; }

    /// Whether a deferred run is part of the command that asks for it: a recording records only that one,
    /// whose replay asks for the same again. Default false: each is recorded by itself, and one that hands
    /// its work on isn't.
    bool partOfCaller() const { return m_partOfCaller; }
    void partOfCaller(bool value) { m_partOfCaller = value; }

    EAlternateSelectionSetBehavior alternateSelectionSetBehavior() const { return m_alternateSelection; }
    void alternateSelectionSetBehavior(EAlternateSelectionSetBehavior value) { m_alternateSelection = value; }

private:
    struct Argument;
    struct Arguments;
    const Argument* find(const Vs::UniqueString* key) const;
    Argument& own(const Vs::UniqueString* key);
    ECommandAccessPoint calledFrom() const;

    AssetSession* m_assetSession = nullptr;
    Shell* m_shell = nullptr;
    Workspace* m_workspace = nullptr;
    std::shared_ptr<Arguments> m_arguments;
    ECommandAccessPoint m_accessPoint = ECommandAccessPoint::Unknown;
    ECommandAccessPoint m_repeatedFrom = ECommandAccessPoint::Unknown; ///< What asked for the repetition.
    EAlternateSelectionSetBehavior m_alternateSelection = EAlternateSelectionSetBehavior::UseSelection;
    bool m_executeImmediately = true;
    bool m_partOfCaller = false;
};

} // namespace Vu
