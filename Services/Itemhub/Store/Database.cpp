#include "Services/Itemhub/Store/Database.h"

#include "Services/Itemhub/Store/Migrations.h"
#include "Services/Itemhub/Store/Pool.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

#include <atomic>
#include <chrono>
#include <thread>

namespace Itemhub::Store {

namespace {

/// What this thread has borrowed from a database, by the database's number.
struct Borrowed
{
    std::unique_ptr<Pool::Loan> writing, reading;
};
thread_local std::unordered_map<quint64, Borrowed> t_borrowed;

using Clock = std::chrono::steady_clock;
/// Until when no replica is tried, after none was available.
std::atomic<Clock::rep> replicasAwayUntil = 0;

QString freshName()
{
    static std::atomic<quint64> count = 0;
    return QString("itemhub-%1").arg(++count);
}

} // namespace

Rows::~Rows()
{
    if (m_query)
        m_query->finish();
}

bool Rows::next()
{
    return m_query->next();
}

qint64 Rows::number(int column) const
{
    return m_query->value(column).toLongLong();
}

double Rows::real(int column) const
{
    return m_query->value(column).toDouble();
}

QString Rows::text(int column) const
{
    return m_query->value(column).toString();
}

bool Rows::isNull(int column) const
{
    return m_query->isNull(column);
}

qint64 Rows::changed() const
{
    return m_query->numRowsAffected();
}

Connection::Connection(const Database& database, Use use)
    : m_database(database),
      m_use(use),
      m_name(freshName()),
      m_link(std::make_unique<QSqlDatabase>(QSqlDatabase::addDatabase(dialect().driver(), m_name))),
      m_changeMark(database.dialect().changeMark().toStdString())
{
    try {
        open(use);
    } catch (...) {
        m_link.reset();
        QSqlDatabase::removeDatabase(m_name);
        throw;
    }
}

void Connection::open(Use use)
{
    dialect().configure(*m_link, use);
    if (!m_link->open())
        throw StoreError(StoreError::Kind::Gone,
                         "The database " + m_database.options().name.toStdString() +
                             " cannot be opened: " + m_link->lastError().text().toStdString());
    for (const QString& setting : dialect().settings())
        runPatiently(setting);
    // The first connection records which file it is.
    dialect().requireSame();
}

// SQLite's busy timeout doesn't apply when two first connections change the journal mode.
void Connection::runPatiently(const QString& setting)
{
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(m_database.options().patienceMs);
    for (;;) {
        try {
            runPlain(setting);
            return;
        } catch (const StoreError& error) {
            if (error.kind != StoreError::Kind::Busy || std::chrono::steady_clock::now() > end)
                throw;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

Connection::~Connection()
{
    m_statements.clear();
    m_link.reset();
    QSqlDatabase::removeDatabase(m_name);
}

const Dialect& Connection::dialect() const
{
    return m_database.dialect();
}

QSqlDriver* Connection::driver() const
{
    return m_link->driver();
}

void Connection::leave()
{
    driver()->moveToThread(nullptr);
}

void Connection::arrive()
{
    driver()->moveToThread(QThread::currentThread());
    m_isFresh = true;
}

void Connection::fail(const QSqlError& error)
{
    const StoreError::Kind kind = dialect().kindOf(error);
    m_isLost = m_isLost || kind == StoreError::Kind::Gone;
    throw StoreError(kind, "The database refuses (" + error.nativeErrorCode().toStdString() +
                               "): " + error.text().toStdString());
}

bool Connection::reopened(const QSqlError& error, bool isHarmless)
{
    if (!std::exchange(m_isFresh, false) || !isHarmless || m_depth > 0 ||
        dialect().kindOf(error) != StoreError::Kind::Gone)
        return false;
    m_statements.clear();
    m_link->close();
    open(m_use == Use::Create ? Use::Write : m_use);
    return true;
}

void Connection::runPlain(const QString& statement)
{
    for (bool again = true; again;) {
        QSqlQuery query(*m_link);
        again = !query.exec(statement);
        if (again && !reopened(query.lastError(), statement == dialect().beginWriting()))
            fail(query.lastError());
    }
    m_isFresh = false;
}

QSqlQuery& Connection::prepared(std::string_view statement)
{
    const auto known = m_statements.find(statement);
    if (known != m_statements.end())
        return *known->second;
    auto query = std::make_unique<QSqlQuery>(*m_link);
    query->setForwardOnly(true);
    if (!query->prepare(QString::fromUtf8(statement.data(), static_cast<qsizetype>(statement.size())))) {
        if (!reopened(query->lastError(), true))
            fail(query->lastError());
        return prepared(statement);
    }
    return *m_statements.emplace(statement, std::move(query)).first->second;
}

Rows Connection::run(std::string_view statement, std::initializer_list<QVariant> values)
{
    QSqlQuery& query = prepared(statement);
    int place = 0;
    // Qt treats an unset text as null, which is something else here.
    for (const QVariant& value : values)
        query.bindValue(place++, value.typeId() == QMetaType::QString && value.toString().isNull()
                                     ? QVariant("")
                                     : value);
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        query.finish();
        if (reopened(error, statement.starts_with("SELECT")))
            return run(statement, values);
        fail(error);
    }
    m_isFresh = false;
    if (!query.isSelect())
        m_mark = -1;
    return Rows(query);
}

quint64 Connection::state()
{
    static std::atomic<quint64> states = 0;
    // What a transaction sees may be rolled back.
    if (m_changeMark.empty() || m_depth > 0) {
        m_mark = -1;
        return m_state = ++states;
    }
    Rows rows = run(std::string_view(m_changeMark));
    rows.next();
    if (std::exchange(m_mark, rows.number(0)) != rows.number(0))
        m_state = ++states;
    return m_state;
}

Rows Connection::runBuilt(const QString& statement, std::initializer_list<QVariant> values)
{
    return run(std::string_view(statement.toStdString()), values);
}

void Connection::afterCommit(std::function<void()> what)
{
    if (m_depth == 0)
        what();
    else
        m_afterCommit.push_back(std::move(what));
}

Transaction::Transaction(Connection& connection) : m_connection(connection)
{
    if (m_connection.m_depth == 0) {
        m_connection.dialect().requireSame();
        m_connection.runPlain(m_connection.dialect().beginWriting());
        m_connection.m_broken = false;
        m_connection.m_afterCommit.clear();
    }
    ++m_connection.m_depth;
}

Transaction::~Transaction()
{
    if (!m_open)
        return;
    m_connection.m_broken = true;
    if (--m_connection.m_depth > 0)
        return;
    try {
        m_connection.runPlain("ROLLBACK");
    } catch (const StoreError&) {
        // Whatever failed has rolled it back.
    }
}

void Transaction::commit()
{
    if (m_connection.m_depth > 1) {
        --m_connection.m_depth;
        m_open = false;
        return;
    }
    if (m_connection.m_broken)
        throw StoreError(StoreError::Kind::Other, "A transaction within this one was taken back.");
    m_connection.m_mark = -1;
    m_connection.runPlain("COMMIT");
    m_connection.m_depth = 0;
    m_open = false;
    for (const auto& what : std::exchange(m_connection.m_afterCommit, {}))
        what();
}

Database::Database(DatabaseOptions options)
    : m_options(std::move(options)),
      m_dialect(Dialect::of(m_options)),
      m_writing(std::make_shared<Pool>(*this, Use::Write, m_dialect->isPooled() ? m_options.connections : 0)),
      m_reading(std::make_shared<Pool>(*this, Use::Read, m_options.connections))
{
    static std::atomic<quint64> count = 0;
    m_number = ++count;
    auto first = std::make_unique<Connection>(*this, Use::Create);
    migrate(*first);
    t_borrowed[m_number].writing = Pool::lend(m_writing, std::move(first));
}

Database::~Database()
{
    t_borrowed.erase(m_number);
}

Connection& Database::connection() const
{
    auto& borrowed = t_borrowed[m_number].writing;
    if (!borrowed)
        borrowed = Pool::borrow(m_writing);
    return borrowed->connection();
}

Connection& Database::reading() const
{
    constexpr std::chrono::seconds kAway{5};
    const QString position = dialect().position();
    if (position.isEmpty() || Clock::now().time_since_epoch().count() < replicasAwayUntil)
        return connection();
    const QString reached = firstOf(connection().runBuilt(position), [](const Rows& row) {
                                return row.text(0);
                            }).value_or(QString());
    auto& borrowed = t_borrowed[m_number].reading;
    try {
        if (!borrowed)
            borrowed = Pool::borrow(m_reading);
        Connection& replica = borrowed->connection();
        // Waits for a replica that is a moment behind, but not for one that lags.
        constexpr int kLooks = 3;
        for (int look = 0; look < kLooks; ++look) {
            if (replica.runBuilt(dialect().hasReached(), {reached}).next())
                return replica;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    } catch (const StoreError&) {
        borrowed.reset();
        replicasAwayUntil = (Clock::now() + kAway).time_since_epoch().count();
    }
    return connection();
}

void Database::giveBack() const
{
    if (dialect().isPooled())
        t_borrowed.erase(m_number);
}

qint64 now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace Itemhub::Store
