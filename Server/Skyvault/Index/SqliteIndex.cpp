#include "Server/Base/Exception.h"
#include "Server/Skyvault/Private/CacheIndex.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <array>
#include <xxhash.h>

namespace Vs::Cloud {
namespace {

constexpr int kLayout = 1;

constexpr const char* kMakeFiles =
    "CREATE TABLE IF NOT EXISTS files ("
    "path TEXT PRIMARY KEY, folder TEXT NOT NULL, onDrive INTEGER NOT NULL, "
    "etag TEXT NOT NULL, size INTEGER NOT NULL, hash TEXT NOT NULL, "
    "localTime INTEGER NOT NULL, pending INTEGER NOT NULL, since INTEGER NOT NULL, "
    "sent TEXT NOT NULL, "
    "incomingEtag TEXT NOT NULL, incomingHash TEXT NOT NULL, "
    "otherEtag TEXT NOT NULL, otherUser TEXT NOT NULL, otherTime INTEGER NOT NULL)";
constexpr const char* kMakeFolders = "CREATE INDEX IF NOT EXISTS folders ON files (folder)";
constexpr const char* kMakePending = "CREATE INDEX IF NOT EXISTS waiting ON files (since) WHERE pending != 0";
constexpr const char* kColumns =
    "path, onDrive, etag, size, hash, localTime, pending, since, sent, incomingEtag, "
    "incomingHash, otherEtag, otherUser, otherTime";

std::string folderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/'));
}

QString text(const std::string& value)
{
    // Never null, which differs from an empty text.
    return value.empty() ? QStringLiteral("") : QString::fromStdString(value);
}

class SqliteIndex : public CacheIndex
{
public:
    explicit SqliteIndex(std::string file) : m_file(std::move(file))
    {
        static int count = 0;
        m_connection = QStringLiteral("quillet-cloud-%1").arg(++count);
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
        m_database.setDatabaseName(QString::fromStdString(m_file));
        // Another run of the program may be writing at the moment.
        m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        try {
            if (!m_database.open())
                fail(m_database.lastError());
            prepare();
        } catch (...) {
            close();
            throw;
        }
    }
    ~SqliteIndex() override { close(); }

    std::optional<CacheRow> find(const std::string& path) override
    {
        const auto rows = select("path = ?", text(path));
        return rows.empty() ? std::nullopt : std::optional(rows.front());
    }
    void put(const CacheRow& row) override
    {
        run("INSERT OR REPLACE INTO files (folder, " + QString::fromLatin1(kColumns) +
                ") VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
            {text(folderOf(row.path)), text(row.path), row.onDrive, text(row.etag), qulonglong(row.size),
             text(row.hash), qlonglong(row.localTime), int(row.pending), qlonglong(row.since), text(row.sent),
             text(row.incomingEtag), text(row.incomingHash), text(row.otherEtag), text(row.otherUser),
             qlonglong(row.otherTime)});
    }
    void remove(const std::string& path) override
    {
        run(QStringLiteral("DELETE FROM files WHERE path = ?"), {text(path)});
    }
    void replace(const std::string& gone, const CacheRow& row) override
    {
        if (!m_database.transaction())
            fail(m_database.lastError());
        try {
            remove(gone);
            put(row);
        } catch (...) {
            m_database.rollback();
            throw;
        }
        if (!m_database.commit())
            fail(m_database.lastError());
    }
    std::vector<CacheRow> inFolder(const std::string& folder) override
    {
        return select("folder = ? ORDER BY path", text(folder));
    }
    std::vector<std::string> foldersIn(const std::string& folder) override
    {
        // Everything that begins with the folder and a slash; the character after the slash is '0'.
        QSqlQuery query = run(QStringLiteral("SELECT DISTINCT folder FROM files WHERE folder >= ? AND "
                                             "folder < ? ORDER BY folder"),
                              {text(folder + '/'), text(folder + '0')});
        std::vector<std::string> folders;
        while (query.next()) {
            const std::string below = query.value(0).toString().toStdString();
            std::string path = below.substr(0, below.find('/', folder.size() + 1));
            if (folders.empty() || folders.back() != path)
                folders.push_back(std::move(path));
        }
        if (query.lastError().isValid())
            fail(query.lastError());
        return folders;
    }
    std::vector<CacheRow> pending() override { return select("pending != ? ORDER BY since", 0); }

    /// Whether the error means that the file isn't a valid index.
    static bool isDamage(const QSqlError& error)
    {
        constexpr std::array kDamage{"11", "26"}; // SQLITE_CORRUPT, SQLITE_NOTADB
        const QString code = error.nativeErrorCode();
        return code == QLatin1String(kDamage[0]) || code == QLatin1String(kDamage[1]);
    }
    struct Damaged : Exception
    {
        using Exception::Exception;
    };

private:
    void prepare()
    {
        // A change is on the medium before it is acknowledged.
        run(QStringLiteral("PRAGMA synchronous = FULL"), {});
        const int layout = number(QStringLiteral("PRAGMA user_version"));
        if (layout > kLayout)
            throw Exception(m_file + " was written by a newer version of the program");
        for (const char* statement : {kMakeFiles, kMakeFolders, kMakePending})
            run(QString::fromLatin1(statement), {});
        if (layout < kLayout)
            run(QStringLiteral("PRAGMA user_version = %1").arg(kLayout), {});
        // Finds deeper damage now rather than in the middle of a save.
        if (number(QStringLiteral("SELECT count(*) FROM pragma_quick_check WHERE quick_check != 'ok'")) != 0)
            throw Damaged(m_file + " is damaged");
    }
    void close()
    {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connection);
    }
    [[noreturn]] void fail(const QSqlError& error) const
    {
        const std::string message = m_file + ": " + error.databaseText().toStdString();
        if (isDamage(error))
            throw Damaged(message);
        throw Exception(message);
    }
    QSqlQuery run(const QString& statement, const QVariantList& values) const
    {
        QSqlQuery query(m_database);
        query.setForwardOnly(true);
        if (!query.prepare(statement))
            fail(query.lastError());
        for (const QVariant& value : values)
            query.addBindValue(value);
        if (!query.exec())
            fail(query.lastError());
        return query;
    }
    int number(const QString& statement) const
    {
        QSqlQuery query = run(statement, {});
        return query.next() ? query.value(0).toInt() : 0;
    }
    std::vector<CacheRow> select(const char* condition, const QVariant& value) const
    {
        QSqlQuery query = run(QStringLiteral("SELECT %1 FROM files WHERE %2")
                                  .arg(QLatin1String(kColumns), QLatin1String(condition)),
                              {value});
        std::vector<CacheRow> rows;
        while (query.next())
            rows.push_back(rowOf(query));
        if (query.lastError().isValid())
            fail(query.lastError());
        return rows;
    }
    static CacheRow rowOf(const QSqlQuery& query)
    {
        int column = 0;
        const auto next = [&] { return query.value(column++); };
        const auto nextText = [&] { return next().toString().toStdString(); };
        CacheRow row;
        row.path = nextText();
        row.onDrive = next().toBool();
        row.etag = nextText();
        row.size = next().toULongLong();
        row.hash = nextText();
        row.localTime = next().toLongLong();
        row.pending = static_cast<CacheRow::Pending>(next().toInt());
        row.since = next().toLongLong();
        row.sent = nextText();
        row.incomingEtag = nextText();
        row.incomingHash = nextText();
        row.otherEtag = nextText();
        row.otherUser = nextText();
        row.otherTime = next().toLongLong();
        return row;
    }

    std::string m_file;
    QString m_connection;
    QSqlDatabase m_database;
};

class Library : public CacheIndexLibrary
{
public:
    std::unique_ptr<CacheIndex> open(const std::string& file, bool& wasDamaged) override
    {
        wasDamaged = false;
        try {
            return std::make_unique<SqliteIndex>(file);
        } catch (const SqliteIndex::Damaged& damaged) {
            const QString name = QString::fromStdString(file), aside = name + QStringLiteral(".broken");
            QFile::remove(aside);
            if (!QFile::rename(name, aside))
                throw Exception(damaged.message());
            // SQLite's journal belongs to the damaged one.
            QFile::remove(name + QStringLiteral("-journal"));
        }
        wasDamaged = true;
        return std::make_unique<SqliteIndex>(file);
    }
    std::string hashOf(const std::string& file) override;
};

std::string Library::hashOf(const std::string& file)
{
    QFile device(QString::fromStdString(file));
    if (!device.open(QIODevice::ReadOnly))
        throw Exception(file + " cannot be read: " + device.errorString().toStdString());
    const std::unique_ptr<XXH3_state_t, decltype(&XXH3_freeState)> state(XXH3_createState(), &XXH3_freeState);
    XXH3_128bits_reset(state.get());
    constexpr qint64 kBlock = 1 << 20;
    QByteArray block(kBlock, Qt::Uninitialized);
    for (qint64 count = 0; (count = device.read(block.data(), kBlock)) != 0;) {
        if (count < 0)
            throw Exception(file + " cannot be read: " + device.errorString().toStdString());
        XXH3_128bits_update(state.get(), block.constData(), static_cast<size_t>(count));
    }
    XXH128_canonical_t digest;
    XXH128_canonicalFromHash(&digest, XXH3_128bits_digest(state.get()));
    return QByteArray(reinterpret_cast<const char*>(digest.digest), sizeof digest.digest)
        .toHex()
        .toStdString();
}

} // namespace
} // namespace Vs::Cloud

extern "C" Vs::Cloud::CacheIndexLibrary* quilletCloudIndex()
{
    static Vs::Cloud::Library library;
    return &library;
}
