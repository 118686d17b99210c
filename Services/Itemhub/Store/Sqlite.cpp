#include "Services/Itemhub/Store/Sqlite.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QUrl>

#include <optional>
#include <sys/stat.h>

namespace Itemhub::Store {

namespace {

class Sqlite : public Dialect
{
public:
    explicit Sqlite(const DatabaseOptions& options) : m_options(options) {}

    QString driver() const override { return "QSQLITE"; }

    void configure(QSqlDatabase& database, Use use) const override
    {
        const bool mayCreate = use == Use::Create;
        // As a URI, the only way to say that a missing file must not be created.
        QUrl address = QUrl::fromLocalFile(m_options.name);
        address.setQuery(mayCreate ? "mode=rwc" : "mode=rw");
        database.setDatabaseName(address.toString(QUrl::FullyEncoded));
        database.setConnectOptions(
            QString("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1").arg(m_options.patienceMs));
        if (!mayCreate)
            requireSame();
    }

    QStringList settings() const override
    {
        // Readers concurrently with one writer; and what was answered is on disk.
        return {"PRAGMA journal_mode = WAL",   "PRAGMA synchronous = FULL", "PRAGMA foreign_keys = ON",
                "PRAGMA trusted_schema = OFF", "PRAGMA cache_size = -8000", "PRAGMA temp_store = MEMORY"};
    }

    QString expanded(QString migration) const override
    {
        return migration.replace("@ID@", "INTEGER PRIMARY KEY AUTOINCREMENT")
            .replace("@SEARCH@", "SELECT 1")
            .replace("@SIMILAR@", "SELECT 1");
    }

    QString beginWriting() const override { return "BEGIN IMMEDIATE"; }
    QString beforeEvent() const override { return {}; }
    QString changeMark() const override { return "PRAGMA data_version"; }

    StoreError::Kind kindOf(const QSqlError& error) const override
    {
        // The low byte is the primary result code; the rest is more detail than needed.
        switch (error.nativeErrorCode().toInt() & 0xff) {
        case 5:
        case 6:
            return StoreError::Kind::Busy;
        case 13:
            return StoreError::Kind::Full;
        case 8:
        case 10:
        case 11:
        case 14:
        case 26:
            return StoreError::Kind::Gone;
        case 19:
            return StoreError::Kind::Conflict;
        default:
            return StoreError::Kind::Other;
        }
    }

    void requireSame() const override
    {
        struct stat now
        {
        };
        const bool there = ::stat(QFile::encodeName(m_options.name).constData(), &now) == 0;
        if (there && !m_opened)
            m_opened = now;
        // A deleted file could still be written to, and all of it would be lost.
        if (!there || now.st_ino != m_opened->st_ino || now.st_dev != m_opened->st_dev)
            throw StoreError(StoreError::Kind::Gone, "The database's file " + m_options.name.toStdString() +
                                                         " is no longer the one that was opened.");
    }

    // One table per tenant: word frequencies of other tenants must neither leak nor cost time.
    QStringList makeSearch(qint64 tenant) const override
    {
        return {QString("CREATE VIRTUAL TABLE %1 USING fts5(caption, text, tokenize = 'unicode61 "
                        "remove_diacritics 2', "
                        "prefix = '1 2 3')")
                    .arg(table(tenant)),
                QString("INSERT INTO %1(%1, rank) VALUES ('rank', 'bm25(8.0, 1.0)')").arg(table(tenant))};
    }

    QString unindex(qint64 tenant) const override
    {
        return QString("DELETE FROM %1 WHERE rowid = ?").arg(table(tenant));
    }

    QString index(qint64 tenant) const override
    {
        return QString("INSERT INTO %1(rowid, caption, text) VALUES (?, ?, ?)").arg(table(tenant));
    }

    QString search(qint64 tenant, bool ranked) const override
    {
        if (!ranked)
            return QString("SELECT rowid, 0.0 FROM %1 WHERE %1 MATCH ? ORDER BY rowid DESC LIMIT ?")
                .arg(table(tenant));
        return QString("SELECT item, score FROM (SELECT rowid AS item, bm25(%1, 8.0, 1.0) AS score FROM %1 "
                       "WHERE %1 MATCH ? ORDER BY rowid DESC LIMIT %2) AS matches ORDER BY score, item DESC "
                       "LIMIT ?")
            .arg(table(tenant))
            .arg(kRankedMatches);
    }

    // Lists of whole words are merged while they are read, up to the last match wanted, whereas a prefix
    // requires the lists of all its words to be combined first, and again for ranking.
    QString searchArgument(const std::vector<SearchWord>& words) const override
    {
        QStringList terms;
        for (const SearchWord& word : words) {
            QStringList either;
            for (const QString& whole : word.whole)
                either << phrase(whole);
            terms << (either.isEmpty() ? phrase(word.beginning) + '*' : '(' + either.join(" OR ") + ')');
        }
        return terms.join(" AND ");
    }

    // It belongs to the connection, and takes no space.
    QString prepareWords(qint64 tenant) const override
    {
        return QString("CREATE VIRTUAL TABLE IF NOT EXISTS temp.%1_words USING fts5vocab(main, %1, instance)")
            .arg(table(tenant));
    }

    QString nextWord(qint64 tenant) const override
    {
        return QString("SELECT term FROM temp.%1_words WHERE term >= ? LIMIT 1").arg(table(tenant));
    }

    QString backup(const QString& file) const override { return "VACUUM INTO " + quoted(file); }

private:
    static QString phrase(QString text) { return '"' + text.replace('"', "\"\"") + '"'; }
    static QString table(qint64 tenant) { return QString("search_%1").arg(tenant); }

    DatabaseOptions m_options;
    mutable std::optional<struct stat>
        m_opened; ///< Set by the first connection, which is made before any threads exist.
};

} // namespace

std::unique_ptr<Dialect> sqliteDialect(const DatabaseOptions& options)
{
    return std::make_unique<Sqlite>(options);
}

} // namespace Itemhub::Store
