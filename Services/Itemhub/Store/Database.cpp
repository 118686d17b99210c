#include "Services/Itemhub/Store/Database.h"

#include "Services/Itemhub/Store/Migrations.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <atomic>
#include <chrono>
#include <thread>

namespace Itemhub::Store {

namespace {

/// This thread's connections, by the number of their database.
thread_local std::unordered_map<quint64, std::unique_ptr<Connection>> t_connections;

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

Connection::Connection(const Database& database, bool mayCreate)
    : m_database(database), m_name(freshName()), m_changeMark(database.dialect().changeMark().toStdString())
{
    QSqlDatabase connection = QSqlDatabase::addDatabase(dialect().driver(), m_name);
    dialect().configure(connection, mayCreate);
    if (!connection.open())
        throw StoreError(StoreError::Kind::Gone,
                         "The database " + m_database.options().name.toStdString() +
                             " cannot be opened: " + connection.lastError().text().toStdString());
    for (const QString& setting : dialect().settings())
        runPatiently(setting);
    // The first connection notes which file it is.
    dialect().requireSame();
}

// SQLite doesn't wait by itself where two connections that come first change the way of writing.
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
    QSqlDatabase::removeDatabase(m_name);
}

const Dialect& Connection::dialect() const
{
    return m_database.dialect();
}

void Connection::fail(const QSqlError& error) const
{
    throw StoreError(dialect().kindOf(error), "The database refuses (" +
                                                  error.nativeErrorCode().toStdString() +
                                                  "): " + error.text().toStdString());
}

void Connection::runPlain(const QString& statement)
{
    QSqlQuery query(QSqlDatabase::database(m_name, false));
    if (!query.exec(statement))
        fail(query.lastError());
}

Rows Connection::run(std::string_view statement, std::initializer_list<QVariant> values)
{
    auto found = m_statements.find(statement);
    if (found == m_statements.end()) {
        auto query = std::make_unique<QSqlQuery>(QSqlDatabase::database(m_name, false));
        query->setForwardOnly(true);
        if (!query->prepare(QString::fromUtf8(statement.data(), static_cast<qsizetype>(statement.size()))))
            fail(query->lastError());
        found = m_statements.emplace(statement, std::move(query)).first;
    }
    QSqlQuery& query = *found->second;
    int place = 0;
    // Qt takes a text that nobody set for a null, which here is another thing.
    for (const QVariant& value : values)
        query.bindValue(place++, value.typeId() == QMetaType::QString && value.toString().isNull()
                                     ? QVariant("")
                                     : value);
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        query.finish();
        fail(error);
    }
    if (!query.isSelect())
        m_mark = -1;
    return Rows(query);
}

quint64 Connection::state()
{
    static std::atomic<quint64> states = 0;
    // What a transaction sees may be taken back.
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

Transaction::Transaction(Connection& connection) : m_connection(connection)
{
    if (m_connection.m_depth == 0) {
        m_connection.dialect().requireSame();
        m_connection.runPlain(m_connection.dialect().beginWriting());
        m_connection.m_broken = false;
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
        // It has been taken back by what failed.
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
}

Database::Database(DatabaseOptions options) : m_options(std::move(options)), m_dialect(Dialect::of(m_options))
{
    static std::atomic<quint64> count = 0;
    m_number = ++count;
    auto first = std::make_unique<Connection>(*this, true);
    migrate(*first);
    t_connections.emplace(m_number, std::move(first));
}

Database::~Database()
{
    t_connections.erase(m_number);
}

Connection& Database::connection() const
{
    std::unique_ptr<Connection>& connection = t_connections[m_number];
    if (!connection)
        connection = std::make_unique<Connection>(*this);
    return *connection;
}

qint64 now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace Itemhub::Store
