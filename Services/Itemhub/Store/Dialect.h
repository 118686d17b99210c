#pragma once

#include "Services/Itemhub/Store/StoreError.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QSqlDatabase;
class QSqlError;

namespace Itemhub::Store {

/// Which database to use, and how to reach it.
struct DatabaseOptions
{
    QString driver = "sqlite"; ///< "sqlite" or "postgresql".
    QString name;              ///< SQLite's file, or PostgreSQL's database.
    /// PostgreSQL's, for example "one.example.org:5433, two.example.org"; of several servers, the writable
    /// one is found. Empty for its defaults.
    QString host, user;
    QString password;          ///< For PostgreSQL.
    int port = 0;              ///< For hosts that name none; 0 for the default.
    int patienceMs = 5000;     ///< How long a change waits for those of others.
    bool readReplicas = false; ///< Whether read-only servers may answer lists and searches.
    int connections = 16;      ///< Concurrent ones to PostgreSQL, and as many to replicas.
};

/// The purpose of a connection.
enum class Use {
    Create, ///< Like Write; creates a database that is missing.
    Write,
    Read, ///< From a replica, if there is one.
};

/// A word to search for, without blanks.
struct SearchWord
{
    QString beginning;
    QStringList whole; ///< All words with that prefix, as the search spells them; empty if they aren't known.
};

/// Everything in which the databases differ. The rest is SQL that both understand.
class Dialect
{
public:
    [[nodiscard]] static std::unique_ptr<Dialect> of(const DatabaseOptions& options);

    virtual ~Dialect() = default;

    [[nodiscard]] virtual QString driver() const = 0; ///< Qt's name of it.
    /// Sets name and options of a connection that isn't open yet.
    virtual void configure(QSqlDatabase& database, Use use) const = 0;
    /// Run first on each new connection.
    [[nodiscard]] virtual QStringList settings() const = 0;
    /// Run before and after the schema is checked and changed, so that only one of several programs does it.
    [[nodiscard]] virtual QStringList beforeMigrations() const { return {}; }
    [[nodiscard]] virtual QStringList afterMigrations() const { return {}; }
    /// Replaces the placeholders of a migration.
    [[nodiscard]] virtual QString expanded(QString migration) const = 0;

    /// Begins a transaction that changes something. Two such transactions never deadlock.
    [[nodiscard]] virtual QString beginWriting() const = 0;
    /// What a transaction runs before it records an event, so that serials become visible in order; may be
    /// empty.
    [[nodiscard]] virtual QString beforeEvent() const = 0;

    /// What a transaction runs after it has recorded an event, to notify other processes; may be empty.
    [[nodiscard]] virtual QString afterEvent() const { return {}; }
    /// The channel of such notifications, as the driver names it; empty if there is none.
    [[nodiscard]] virtual QString eventChannel() const { return {}; }

    /// Whether connections are scarce, so that threads share them.
    [[nodiscard]] virtual bool isPooled() const { return false; }
    /// A query for the position of the latest change, and one that tells, given that, whether a replica has
    /// reached it; empty if there are no replicas.
    [[nodiscard]] virtual QString position() const { return {}; }
    [[nodiscard]] virtual QString hasReached() const { return {}; }

    /// A query for a number that changes once other connections have changed anything; empty if the database
    /// has no cheap one.
    [[nodiscard]] virtual QString changeMark() const = 0;

    [[nodiscard]] virtual StoreError::Kind kindOf(const QSqlError& error) const = 0;
    /// @throws StoreError (Gone) if what is open is no longer what a new connection would open
    virtual void requireSame() const = 0;

    /// What a new tenant's search needs, one statement each.
    [[nodiscard]] virtual QStringList makeSearch(qint64 tenant) const = 0;
    /// Removes an item from its tenant's search index; takes the item.
    [[nodiscard]] virtual QString unindex(qint64 tenant) const = 0;
    /// Adds an item; takes item, caption, text.
    [[nodiscard]] virtual QString index(qint64 tenant) const = 0;
    /// Finds items: columns item and rank, best match first. Takes the result of searchArgument for the
    /// words, and the number wanted.
    /// @param ranked by how well they match; otherwise newest first
    [[nodiscard]] virtual QString search(qint64 tenant, bool ranked) const = 0;
    /// The same for items whose caption has a similar word for every word; takes the text, its longest word,
    /// the text again, and the number wanted. Empty if the database doesn't support that.
    [[nodiscard]] virtual QString searchSimilar(qint64) const { return {}; }
    [[nodiscard]] virtual QString searchArgument(const std::vector<SearchWord>& words) const = 0;
    /// What a connection needs before it can run nextWord; may be empty.
    [[nodiscard]] virtual QString prepareWords(qint64 tenant) const = 0;
    /// Finds, among the words in the tenant's search index, as spelled there, the first that isn't less than
    /// the given one. Empty if the search doesn't benefit from that.
    [[nodiscard]] virtual QString nextWord(qint64 tenant) const = 0;

    /// Run after numbers generated by another database were copied into a column, so that new ones follow
    /// them; may be empty.
    [[nodiscard]] virtual QString afterNumbers(const char*, const char*) const { return {}; }

    /// The statement that writes a complete copy to a file; empty if a separate tool of the database does
    /// that.
    [[nodiscard]] virtual QString backup(const QString& file) const = 0;

protected:
    /// The number of matches, the newest ones, that are ranked: a word that occurs in every item must not
    /// cost time proportional to the number of items.
    static constexpr int kRankedMatches = 1000;

    /// A text quoted for use in a statement.
    [[nodiscard]] static QString quoted(const QString& text);
};

} // namespace Itemhub::Store
