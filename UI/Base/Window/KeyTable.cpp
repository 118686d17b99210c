#include "UI/Base/Window/KeyTable.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Workspace/MenuBar.h"

#include <QStringList>

#include <algorithm>

namespace Vu {
namespace {

constexpr QLatin1Char kBetween(';');

void collectKeys(const std::vector<ToolbarItem>& items, std::map<std::wstring, QString>& keys)
{
    for (const ToolbarItem& item : items) {
        if (!item.keys.empty())
            for (const std::wstring& command : {item.command, item.off})
                keys[command] = QString::fromStdWString(item.keys);
        collectKeys(item.menu, keys);
    }
}

QString ownKeys(const CommandDefinition& definition)
{
    return QString::fromStdString(definition.info()->hotkey().keys());
}

bool excludeEachOther(const CommandDefinition& one, const CommandDefinition& other)
{
    return !ownKeys(one).isEmpty() && KeyTable::fromText(ownKeys(one)) == KeyTable::fromText(ownKeys(other));
}

bool share(const KeyTable::Keys& one, const KeyTable::Keys& other)
{
    return std::ranges::any_of(one, [&](const QKeySequence& key) { return other.contains(key); });
}

template <class... Values>
QString told(const char* key, const char* english, const Values&... values)
{
    return QString::fromStdWString(localizedFormat(key, english, values...));
}

} // namespace

KeyTable* KeyTable::get()
{
    static auto* const table = new KeyTable;
    return table;
}

KeyTable::Keys KeyTable::fromText(const QString& text, QStringList* unknown)
{
    Keys keys;
    for (const QString& part : text.split(kBetween, Qt::SkipEmptyParts)) {
        const QKeySequence key(part.trimmed(), QKeySequence::PortableText);
        const bool known = !key.isEmpty() && key[0].key() != Qt::Key_unknown;
        if (known && !keys.contains(key))
            keys << key;
        else if (!known && unknown)
            *unknown << part.trimmed();
    }
    return keys;
}

QString KeyTable::toText(const Keys& keys, QKeySequence::SequenceFormat format)
{
    QStringList texts;
    for (const QKeySequence& key : keys)
        texts << key.toString(format);
    return texts.join(QStringLiteral("; "));
}

KeyTable::Keys KeyTable::defaultKeysOf(const CommandDefinition& definition)
{
    read();
    const auto added = m_ofMenus.find(definition.id());
    return fromText(ownKeys(definition) + kBetween + (added == m_ofMenus.end() ? QString() : added->second));
}

KeyTable::Keys KeyTable::keysOf(const CommandDefinition& definition)
{
    read();
    const auto changed = m_changed.find(definition.id());
    return changed == m_changed.end() ? defaultKeysOf(definition) : changed->second;
}

QString KeyTable::shown(const CommandDefinition& definition)
{
    const Keys keys = keysOf(definition);
    return keys.isEmpty() ? QString() : keys.first().toString(QKeySequence::NativeText);
}

void KeyTable::change(const CommandDefinition& definition, const Keys& keys)
{
    read();
    if (keys == defaultKeysOf(definition))
        m_changed.erase(definition.id());
    else
        m_changed[definition.id()] = keys;
    write();
}

void KeyTable::resetAll()
{
    m_changed.clear();
    write();
}

std::vector<CommandDefinition*> KeyTable::rivals(const CommandDefinition& definition, const Keys& keys)
{
    std::vector<CommandDefinition*> rivals;
    for (CommandDefinition* other : CommandDefinitionMgr::get()->commandDefinitions())
        if (other != &definition && !excludeEachOther(definition, *other) && share(keys, keysOf(*other)))
            rivals.push_back(other);
    return rivals;
}

QStringList KeyTable::problems()
{
    read();
    return m_problems;
}

void KeyTable::read()
{
    const std::vector<std::wstring> lines = UIBaseOptionGroup::get()->keys();
    if (m_read && m_lines == lines)
        return;
    m_read = true;
    m_lines = lines;
    m_ofMenus.clear();
    m_changed.clear();
    m_problems.clear();
    collectKeys(MenuBar::get()->menus(), m_ofMenus);
    for (const std::wstring& line : lines)
        readChange(QString::fromStdWString(line));
}

void KeyTable::readChange(const QString& line)
{
    const std::wstring command = line.section(QLatin1Char('='), 0, 0).trimmed().toStdWString();
    const CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(command);
    if (!definition || !line.contains(QLatin1Char('='))) {
        m_problems << told("KeysUnknownCommand", "The table of keys names \"%1%\", which is not a command.",
                           command);
        return;
    }
    QStringList unknown;
    Keys keys = fromText(line.section(QLatin1Char('='), 1), &unknown);
    if (!unknown.isEmpty()) {
        m_problems << told("KeysUnknownKey",
                           "The table of keys gives \"%1%\" the keys \"%2%\", which don't exist.",
                           definition->info()->name(), unknown.join(QStringLiteral("; ")).toStdWString());
        if (keys.isEmpty())
            return;
    }
    m_changed[command] = keys;
    const std::vector<CommandDefinition*> others = rivals(*definition, keys);
    if (others.empty())
        return;
    m_problems << told("KeysConflict",
                       "The table of keys gives \"%1%\" keys that belong to \"%2%\", which keeps them.",
                       definition->info()->name(), others.front()->info()->name());
    for (const CommandDefinition* other : others)
        for (const QKeySequence& key : keysOf(*other))
            m_changed[command].removeAll(key);
}

void KeyTable::write()
{
    std::vector<std::wstring> lines;
    for (const auto& [command, keys] : m_changed)
        lines.push_back(command + L'=' + toText(keys).toStdWString());
    m_lines = lines;
    UIBaseOptionGroup::get()->keys(lines);
    m_problems.clear();
    Q_EMIT changed();
}

} // namespace Vu
