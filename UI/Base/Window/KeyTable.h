#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>

#include <map>
#include <string>
#include <vector>

namespace Vu {

class CommandDefinition;

/// The shortcuts of the commands: those of their own records, those that the menus add, and the user's
/// changes (UIBaseOptionGroup::keys). Main thread only.
class KeyTable : public QObject
{
    Q_OBJECT

public:
    using Keys = QList<QKeySequence>;

    static KeyTable* get();
    /// "Ctrl+F; F3". Unknown keys are left out, and listed in `unknown`.
    static Keys fromText(const QString& text, QStringList* unknown = nullptr);
    static QString toText(const Keys& keys, QKeySequence::SequenceFormat format = QKeySequence::PortableText);

    /// The first is the one that menus and tooltips show.
    Keys keysOf(const CommandDefinition& definition);
    Keys defaultKeysOf(const CommandDefinition& definition);
    /// The first shortcut as displayed to users; empty without any.
    QString shown(const CommandDefinition& definition);

    /// Also stored for the next start.
    void change(const CommandDefinition& definition, const Keys& keys);
    void resetAll();

    /// The other commands that have one of the keys and may run when this one can. Commands that share keys
    /// by their own records exclude each other.
    std::vector<CommandDefinition*> rivals(const CommandDefinition& definition, const Keys& keys);
    /// Errors in the user's changes: unknown commands and keys, and keys of two commands. Such changes are
    /// ignored, except that of two commands the first keeps the key.
    QStringList problems();

Q_SIGNALS:
    void changed();

private:
    KeyTable() = default;
    void read();
    void readChange(const QString& line);
    void write();

    std::map<std::wstring, Keys> m_changed;
    std::map<std::wstring, QString> m_ofMenus;
    QStringList m_problems;
    std::vector<std::wstring> m_lines; ///< The option as last read.
    bool m_read = false;
};

} // namespace Vu
