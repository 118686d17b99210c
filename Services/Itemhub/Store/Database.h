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

/// The result rows of a statement; the statement is released on destruction.
class Rows
{
public:
    explicit Rows(QSqlQuery& query) : m_query(&query) {}
    ~Rows();
    Rows(Rows&& other) noexcept : m_query(std::exchange(other.m_query, nullptr)) {}
    Rows& operator=(Rows&&) = delete;

    /// Advances to the next row, initially the first; false after the last.
    bool next();
    [[nodiscard]] qint64 number(int column) const; ///< 0 for null.
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] QString text(int column) const; ///< Empty for null.
    [[nodiscard]] bool isNull(int column) const;
    [[nodiscard]] qint64 changed() const; ///< The number of rows changed.

private:
    QSqlQuery* m_query; ///< Owned by the connection.
};

/// The result of `make` for the first row; nothing if there is none.
template <class Make>
[[nodiscard]] auto firstOf(Rows rows, Make make) -> std::optional<decltype(make(rows))>
{
    return rows.next() ? std::optional(make(rows)) : std::nullopt;
}

/// The results of `make` for all rows.
template <class Make>
[[nodiscard]] auto allOf(Rows rows, Make make) -> std::vector<decltype(make(rows))>
{
    std::vector<decltype(make(rows))> all;
    while (rows.next())
        all.push_back(make(rows));
    return all;
}

/// The id returned by an insertion.
[[nodiscard]] inline qint64 newId(Rows rows)
{
    return rows.next() ? rows.number(0) : 0;
}

/// The connection that a thread is using.
class Connection
{
public:
    explicit Connection(const Database& database, Use use = Use::Write);
    ~Connection();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Runs a statement with a value for each "?". Statements are prepared once, so values are never part of
    /// their text.
    /// @throws StoreError
    Rows run(std::string_view statement, std::initializer_list<QVariant> values = {});
    /// The same for a statement built by the dialect.
    Rows runBuilt(const QString& statement, std::initializer_list<QVariant> values = {});

    /// Runs one without preparing it, as databases require for schema changes.
    void runPlain(const QString& statement);

    [[nodiscard]] const Dialect& dialect() const;
    [[nodiscard]] QSqlDriver* driver() const;
    [[nodiscard]] const QSqlDatabase& link() const { return *m_link; }

    /// False once the database server is gone: the next user needs another connection.
    [[nodiscard]] bool isGood() const { return !m_isLost && m_depth == 0; }
    /// Detaches it from this thread, so that another one may `arrive` with it.
    void leave();
    void arrive();

    /// A number that changes once anything may have changed, in this process or in another, and is never the
    /// same in two connections; never 0. What a thread caches between requests is valid as long as it stays
    /// the same.
    [[nodiscard]] quint64 state();

    /// Runs something irreversible once all transactions that are open now are committed; at once if none is,
    /// and never if they are rolled back.
    void afterCommit(std::function<void()> what);

private:
    friend class Transaction;

    void open(Use use);
    [[noreturn]] void fail(const QSqlError& error);
    void runPatiently(const QString& setting);
    /// Whether a failed statement may be retried with a new connection: the server was away while it was
    /// idle.
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
    qint64 m_mark = -1;             ///< Its result; -1 after a change by this connection itself.
    quint64 m_state = 0;
    int m_depth = 0; ///< Nesting of transactions.
    std::vector<std::function<void()>> m_afterCommit;
    bool m_broken = false, m_isLost = false;
    bool m_isFresh = false; ///< Nothing has been run since it arrived.
};

/// Changes that are made all or not at all. A nested one belongs to the outer one.
class Transaction
{
public:
    explicit Transaction(Connection& connection); ///< @throws StoreError
    ~Transaction();                               ///< Rolls back unless committed.

    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// @throws StoreError, after everything is rolled back
    void commit();

private:
    Connection& m_connection;
    bool m_open = true;
};

class Pool;

/// The database, which lends a connection to each thread that needs one. Thread-safe.
class Database
{
public:
    /// Brings the database up to this program's schema version, and creates it if it is missing.
    /// @throws StoreError, of kind Newer if a later version of the program has used it
    explicit Database(DatabaseOptions options);
    ~Database();

    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// This thread's connection, until it gives it back.
    /// @throws StoreError of kind Busy if all of them stay in use for too long
    [[nodiscard]] Connection& connection() const;
    /// The same for a query that may be answered by a replica that has everything as of this call; otherwise
    /// this thread's connection.
    [[nodiscard]] Connection& reading() const;
    /// This thread needs no connection for a while; what it was given is no longer valid. Where connections
    /// are plentiful, it keeps it.
    void giveBack() const;
    [[nodiscard]] const Dialect& dialect() const { return *m_dialect; }
    [[nodiscard]] const DatabaseOptions& options() const { return m_options; }

private:
    DatabaseOptions m_options;
    std::unique_ptr<Dialect> m_dialect;
    quint64 m_number; ///< Identifies this database within the process.
    std::shared_ptr<Pool> m_writing, m_reading;
};

/// Behaves as the connection of whichever thread uses it.
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
