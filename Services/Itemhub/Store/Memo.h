#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <QHash>

#include <optional>

namespace Itemhub::Store {

/// A thread's cache of what it has read and may soon need again. Valid as long as nothing at all has changed
/// in the database, whether by this process or another.
template <class Key, class Value>
class Memo
{
public:
    /// @param most the maximum number of entries
    explicit Memo(qsizetype most) : m_most(most) {}

    /// The cached value, otherwise the result of `read()`, a std::optional, which is cached if it has a
    /// value.
    template <class Read>
    [[nodiscard]] std::optional<Value> get(Connection& connection, const Key& key, Read read)
    {
        if (const quint64 state = connection.state(); state != m_state || m_known.size() >= m_most) {
            m_known.clear();
            m_state = state;
        }
        if (const auto kept = m_known.constFind(key); kept != m_known.constEnd())
            return *kept;
        std::optional<Value> value = read();
        if (value)
            m_known.insert(key, *value);
        return value;
    }

private:
    const qsizetype m_most;
    quint64 m_state = 0; ///< Of the database.
    QHash<Key, Value> m_known;
};

} // namespace Itemhub::Store
