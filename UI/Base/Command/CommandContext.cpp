#include "UI/Base/Command/CommandContext.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/Require.h"
#include "Server/Base/SerializableObject.h"
#include "Server/Base/StrongRef.h"
#include "Server/Base/WeakRef.h"
#include "UI/Base/Command/Private/CommandHost.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace Vu {

namespace {

std::optional<int> exactInt(double value)
{
    if (!(value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max()) ||
        value != std::trunc(value))
        return std::nullopt;
    return static_cast<int>(value);
}

/// An argument that is an object. A reference-counted object is kept alive by the argument; any other may be
/// destroyed.
struct ObjectArgument
{
    Vs::WeakRef<Vs::SerializableObject> object;
    Vs::StrongRef<Vs::SharedObject> hold;
};

} // namespace

struct CommandContext::Argument
{
    const Vs::UniqueString* key;
    /// In the order of EArgType.
    std::variant<ObjectArgument, int, double, std::wstring> value;
};

struct CommandContext::Arguments
{
    std::vector<Argument> list;
};

CommandContext::CommandContext() = default;
CommandContext::CommandContext(const CommandContext&) = default;
CommandContext::CommandContext(CommandContext&&) noexcept = default;
CommandContext& CommandContext::operator=(const CommandContext&) = default;
CommandContext& CommandContext::operator=(CommandContext&&) noexcept = default;
CommandContext::~CommandContext() = default;

CommandContext CommandContext::activeContext()
{
    CommandHost* host = CommandHost::get();
    CommandContext context;
    context.m_assetSession = host->activeAssetSession();
    context.m_shell = host->activeShell();
    context.m_workspace = host->activeWorkspace();
    return context;
}

const CommandContext& CommandContext::emptyContext()
{
    static const CommandContext context;
    return context;
}

const Vs::UniqueString* CommandContext::pathArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Path");
    return name;
}

void CommandContext::addArgument(const Vs::UniqueString* key, Vs::SerializableObject* object)
{
    if (!object)
        return;
    // Whether references are counted is up to the object; the caller needn't know.
    own(key).value = ObjectArgument{object, Vs::StrongRef<Vs::SharedObject>(dynamic_cast<Vs::SharedObject*>(
                                                static_cast<Vs::Object*>(object)))};
}

void CommandContext::addArgument(const Vs::UniqueString* key, std::wstring text)
{
    own(key).value = std::move(text);
}

void CommandContext::addArgument(const Vs::UniqueString* key, int value)
{
    own(key).value = value;
}

void CommandContext::addArgument(const Vs::UniqueString* key, double value)
{
    own(key).value = value;
}

void CommandContext::removeArgument(const Vs::UniqueString* key)
{
    if (!hasArgument(key))
        return;
    own(key);
    std::erase_if(m_arguments->list, [&](const Argument& argument) { return argument.key == key; });
}

Vs::SerializableObject* CommandContext::argument(const Vs::UniqueString* key) const
{
    const Argument* found = find(key);
    const ObjectArgument* object = found ? std::get_if<ObjectArgument>(&found->value) : nullptr;
    return object ? object->object.get() : nullptr;
}

bool CommandContext::hasLostObject() const
{
    return m_arguments &&
           std::any_of(m_arguments->list.begin(), m_arguments->list.end(), [](const Argument& each) {
               const auto* object = std::get_if<ObjectArgument>(&each.value);
               return object && object->object.lost();
           });
}

bool CommandContext::argument(const Vs::UniqueString* key, EArgType type, void* value) const
{
    Vs::require(value != nullptr, "an argument is read into a variable");
    const Argument* found = find(key);
    if (!found)
        return false;
    const int* integer = std::get_if<int>(&found->value);
    const double* real = std::get_if<double>(&found->value);
    const std::wstring* text = std::get_if<std::wstring>(&found->value);

    const auto give = [value](const auto& optional) {
        using Value = std::decay_t<decltype(*optional)>;
        if (optional)
            *static_cast<Value*>(value) = *optional;
        return optional.has_value();
    };
    switch (type) {
    case EArgType::Object:
        if (Vs::SerializableObject* object = argument(key)) {
            *static_cast<Vs::SerializableObject**>(value) = object;
            return true;
        }
        return false;
    case EArgType::Int:
        return give(integer ? std::optional<int>(*integer)
                    : real  ? exactInt(*real)
                    : text  ? Vs::readNumber<int>(*text)
                            : std::nullopt);
    case EArgType::Double:
        return give(real      ? std::optional<double>(*real)
                    : integer ? std::optional<double>(*integer)
                    : text    ? Vs::readNumber<double>(*text)
                              : std::nullopt);
    case EArgType::String:
        return give(text      ? std::optional<std::wstring>(*text)
                    : integer ? std::optional(Vs::numberText(*integer))
                    : real    ? std::optional(Vs::numberText(*real))
                              : std::nullopt);
    }
    return false;
}

std::wstring CommandContext::argumentAsString(const Vs::UniqueString* key) const
{
    if (const Vs::SerializableObject* object = argument(key))
        return object->serialize();
    std::wstring text;
    argument(key, EArgType::String, &text);
    return text;
}

bool CommandContext::hasArgument(const Vs::UniqueString* key) const
{
    return find(key) != nullptr;
}

size_t CommandContext::arguments() const
{
    return m_arguments ? m_arguments->list.size() : 0;
}

const Vs::UniqueString* CommandContext::argumentName(size_t index) const
{
    Vs::require(index < arguments(), "an argument that is asked for by its place is there");
    return m_arguments->list.at(index).key;
}

CommandContext::EArgType CommandContext::argumentType(size_t index) const
{
    Vs::require(index < arguments(), "an argument that is asked for by its place is there");
    return static_cast<EArgType>(m_arguments->list.at(index).value.index());
}

Vs::Asset* CommandContext::asset() const
{
    return m_assetSession ? CommandHost::get()->asset(m_assetSession) : nullptr;
}

CommandMgr* CommandContext::commandManager() const
{
    return m_assetSession ? CommandHost::get()->commandManager(m_assetSession) : nullptr;
}

const CommandContext::Argument* CommandContext::find(const Vs::UniqueString* key) const
{
    if (!m_arguments)
        return nullptr;
    for (const Argument& argument : m_arguments->list)
        if (argument.key == key)
            return &argument;
    return nullptr;
}

CommandContext::Argument& CommandContext::own(const Vs::UniqueString* key)
{
    Vs::require(key != nullptr, "an argument has a name");
    if (!m_arguments)
        m_arguments = std::make_shared<Arguments>();
    else if (m_arguments.use_count() > 1)
        m_arguments = std::make_shared<Arguments>(*m_arguments);
    if (const Argument* found = find(key))
        return const_cast<Argument&>(*found);
    return m_arguments->list.emplace_back(Argument{key, 0});
}

ECommandAccessPoint CommandContext::calledFrom() const
{
    return m_accessPoint == ECommandAccessPoint::Repeat ? m_repeatedFrom : m_accessPoint;
}

bool CommandContext::isByHand() const
{
    switch (calledFrom()) {
    case ECommandAccessPoint::Toolbar:
    case ECommandAccessPoint::ApplicationMenu:
    case ECommandAccessPoint::Menu:
    case ECommandAccessPoint::ContextMenu:
    case ECommandAccessPoint::Canvas:
    case ECommandAccessPoint::HotKey:
        return true;
    case ECommandAccessPoint::Unknown:
    case ECommandAccessPoint::Recovery:
    case ECommandAccessPoint::TextLine:
    case ECommandAccessPoint::Transcript:
    case ECommandAccessPoint::Script:
    case ECommandAccessPoint::Command:
    case ECommandAccessPoint::Repeat:
        return false;
    }
    return false; // A number that no route uses.
}

bool CommandContext::isByLine() const
{
    const ECommandAccessPoint from = calledFrom();
    return from == ECommandAccessPoint::TextLine || from == ECommandAccessPoint::Transcript ||
           from == ECommandAccessPoint::Script;
}

} // namespace Vu
