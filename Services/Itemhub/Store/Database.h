#pragma once

#include "Services/Itemhub/Store/Dialect.h"

#include <QVariant>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

class QSqlDatabase;
class QSqlDriver;
class QSqlQuery;

namespace Itemhub::Store {

class Database;

/// The rows that a statement answered; the statement is free again when this goes.
class Rows
{
public:
    explicit Rows(QSqlQuery& query) : m_query(&query) {}
    ~Rows();
    Rows(Rows&& other) noexcept : m_query(std::exchange(other.m_query, nullptr)) {}
    Rows& operator=(Rows&&) = delete;

    /// Goes to the next row, at first to the first; false behind the last.
    bool next();
    [[nodiscard]] qint64 number(int column) const; ///< 0 for null.
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] QString text(int column) const; ///< Empty for null.
    [[nodiscard]] bool isNull(int column) const;
    [[nodiscard]] qint64 changed() const; ///< How many rows were changed.

private:
    QSqlQuery* m_query; ///< Belongs to the connection.
};

/// What `make` makes of the first row; nothing if there is none.
template <class Make>
[[nodiscard]] auto firstOf(Rows rows, Make make) -> std::optional<decltype(make(rows))>
{
    return rows.next() ? std::optional(make(rows)) : std::nullopt;
}

/// What `make` makes of each row.
template <class Make>
[[nodiscard]] auto allOf(Rows rows, Make make) -> std::vector<decltype(make(rows))>
{
    std::vector<decltype(make(rows))> all;
    while (rows.next())
        all.push_back(make(rows));
    return all;
}

/// The id that an insertion returns.
[[nodiscard]] inline qint64 newId(Rows rows)
{
    return rows.next() ? rows.number(0) : 0;
}

/// The connection that a thread has at the time.
class Connection
{
public:
    explicit Connection(const Database& database, Use use = Use::Write);
    ~Connection();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Runs a statement with a value for each "?". Statements are prepared once; so no value ever stands in
    /// its text.
    /// @throws StoreError
    Rows run(std::string_view statement, std::initializer_list<QVariant> values = {});
    /// The same for a statement that the dialect made.
    Rows runBuilt(const QString& statement, std::initializer_list<QVariant> values = {});

    /// Runs one that is not prepared, as databases want those that change the schema.
    void runPlain(const QString& statement);

    [[nodiscard]] const Dialect& dialect() const;
    [[nodiscard]] QSqlDriver* driver() const;
    [[nodiscard]] const QSqlDatabase& link() const { return *m_link; }

    /// False once the database's server has gone: whoever comes next needs another connection.
    [[nodiscard]] bool isGood() const { return !m_isLost && m_depth == 0; }
    /// Leaves this thread, so that another may `arrive` with it.
    void leave();
    void arrive();

    /// A number that is another one once anything may have changed, in this process or in another, and in no
    /// two connections the same; never 0. What a thread keeps between requests is good as long as it stays.
    [[nodiscard]] quint64 state();

    /// Runs what can't be taken back once all transactions that are open now are committed; at once if none
    /// is, and never if they are taken back.
    void afterCommit(std::function<void()> what);

private:
    friend class Transaction;

    void open(Use use);
    [[noreturn]] void fail(const QSqlError& error);
    void runPatiently(const QString& setting);
    /// Whether a statement that failed may be tried again, with a new connection: its server was away while
    /// nobody asked it.
    [[nodiscard]] bool reopened(const QSqlError& error, bool isHarmless);
    QSqlQuery& prepared(std::string_view statement);

    struct Hash
    {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    const Database& m_database;
    const Use m_use;
    QString m_name;
    std::unique_ptr<QSqlDatabase> m_link;
    std::unordered_map<std::string, std::unique_ptr<QSqlQuery>, Hash, std::equal_to<>> m_statements;
    const std::string m_changeMark; ///< The dialect's statement.
    qint64 m_mark = -1;             ///< Its answer; -1 after a change of this connection's own.
    quint64 m_state = 0;
    int m_depth = 0; ///< Of transactions.
    std::vector<std::function<void()>> m_afterCommit;
    bool m_broken = false, m_isLost = false;
    bool m_isFresh = false; ///< Nothing was run since it arrived.
};

/// Changes that are made together or not at all. One within another belongs to that.
class Transaction
{
public:
    explicit Transaction(Connection& connection); ///< @throws StoreError
    ~Transaction();                               ///< Takes everything back that wasn't committed.

    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// @throws StoreError, and everything is taken back
    void commit();

private:
    Connection& m_connection;
    bool m_open = true;
};

class Pool;

/// The database, which lends a connection to each thread that asks. Thread-safe.
class Database
{
public:
    /// Brings the database up to this program's version, and makes it if it's missing.
    /// @throws StoreError, of kind Newer if a later version of the program has been at it
    explicit Database(DatabaseOptions options);
    ~Database();

    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// This thread's connection, until it gives it back.
    /// @throws StoreError of kind Busy if others have all of them for too long
    [[nodiscard]] Connection& connection() const;
    /// The same for a look that may be left to a replica: one that has all that there was when this was
    /// called. Else this thread's connection.
    [[nodiscard]] Connection& reading() const;
    /// This thread needs none for a while; what it was given is no longer its own. Where connections are
    /// many, it keeps it.
    void giveBack() const;
    [[nodiscard]] const Dialect& dialect() const { return *m_dialect; }
    [[nodiscard]] const DatabaseOptions& options() const { return m_options; }

private:
    DatabaseOptions m_options;
    std::unique_ptr<Dialect> m_dialect;
    quint64 m_number; ///< Which database of this process it is.
    std::shared_ptr<Pool> m_writing, m_reading;
};

/// Stands for the connection of whichever thread uses it.
class ThreadsConnection
{
public:
    explicit ThreadsConnection(const Database& database) : m_database(database) {}
    operator Connection&() const { return m_database.connection(); }

private:
    const Database& m_database;
};

/// Milliseconds since 1970, in UTC.
[[nodiscard]] qint64 now();

} // namespace Itemhub::Store
