#pragma once

#include "Services/Itemhub/Store/StoreError.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QSqlDatabase;
class QSqlError;

namespace Itemhub::Store {

/// Which database, and how it is reached.
struct DatabaseOptions
{
    QString driver = "sqlite"; ///< "sqlite" or "postgresql".
    QString name;              ///< SQLite's file, or PostgreSQL's database.
    /// PostgreSQL's, as "one.example.org:5433, two.example.org"; of several servers the one that takes
    /// changes is found. Empty for its own defaults.
    QString host, user;
    QString password;          ///< Of PostgreSQL.
    int port = 0;              ///< Where host names none; 0 for the default.
    int patienceMs = 5000;     ///< How long a change waits for others'.
    bool readReplicas = false; ///< Whether lists and searches may be answered by servers that only follow.
    int connections = 16;      ///< To PostgreSQL at the same time, and as many to replicas.
};

/// What a connection is for.
enum class Use {
    Create, ///< As Write; a database that is missing is made.
    Write,
    Read, ///< With a replica, if there is one.
};

/// A word that is looked for, without blanks.
struct SearchWord
{
    QString beginning;
    QStringList whole; ///< All words that begin so, as the search writes them; empty if they aren't known.
};

/// All in which the databases differ. Everything else is SQL that both understand.
class Dialect
{
public:
    [[nodiscard]] static std::unique_ptr<Dialect> of(const DatabaseOptions& options);

    virtual ~Dialect() = default;

    [[nodiscard]] virtual QString driver() const = 0; ///< Qt's name.
    /// Sets name and options of a connection that isn't open yet.
    virtual void configure(QSqlDatabase& database, Use use) const = 0;
    /// What each new connection is told first.
    [[nodiscard]] virtual QStringList settings() const = 0;
    /// Run before and after the schema is looked at and changed, so that of several programs one does it.
    [[nodiscard]] virtual QStringList beforeMigrations() const { return {}; }
    [[nodiscard]] virtual QStringList afterMigrations() const { return {}; }
    /// Replaces the placeholders of a migration.
    [[nodiscard]] virtual QString expanded(QString migration) const = 0;

    /// Begins a transaction that changes something. Two of them never wait for each other crosswise.
    [[nodiscard]] virtual QString beginWriting() const = 0;
    /// What a transaction runs before it notes an event, so that serials become visible in their order; may
    /// be empty.
    [[nodiscard]] virtual QString beforeEvent() const = 0;

    /// What a transaction runs once it has noted an event, so that other processes hear of it; may be empty.
    [[nodiscard]] virtual QString afterEvent() const { return {}; }
    /// What tells connections of such notes, as the driver calls it; empty if nothing does.
    [[nodiscard]] virtual QString eventChannel() const { return {}; }

    /// Whether connections are few, so that threads share them.
    [[nodiscard]] virtual bool isPooled() const { return false; }
    /// What answers with how far all changes are, and what answers, given that, whether a replica is as far;
    /// empty if there are no replicas.
    [[nodiscard]] virtual QString position() const { return {}; }
    [[nodiscard]] virtual QString hasReached() const { return {}; }

    /// A statement that answers with a number which is another one once other connections have changed
    /// anything; empty if the database has no cheap one.
    [[nodiscard]] virtual QString changeMark() const = 0;

    [[nodiscard]] virtual StoreError::Kind kindOf(const QSqlError& error) const = 0;
    /// @throws StoreError (Gone) if what is open is no longer what others would open
    virtual void requireSame() const = 0;

    /// What a new tenant's search needs; each is one statement.
    [[nodiscard]] virtual QStringList makeSearch(qint64 tenant) const = 0;
    /// Removes an item from its tenant's search; takes the item.
    [[nodiscard]] virtual QString unindex(qint64 tenant) const = 0;
    /// Adds one; takes item, caption, text.
    [[nodiscard]] virtual QString index(qint64 tenant) const = 0;
    /// Finds items: columns item and rank, best first. Takes what searchArgument makes of the words, and the
    /// number wanted.
    /// @param ranked by how well they match; else the newest first
    [[nodiscard]] virtual QString search(qint64 tenant, bool ranked) const = 0;
    /// The same for words all of which resemble one of the caption's; takes the text, its longest word, the
    /// text, and the number wanted. Empty if the database can't tell.
    [[nodiscard]] virtual QString searchSimilar(qint64) const { return {}; }
    [[nodiscard]] virtual QString searchArgument(const std::vector<SearchWord>& words) const = 0;
    /// What a connection needs before it may run nextWord; may be empty.
    [[nodiscard]] virtual QString prepareWords(qint64 tenant) const = 0;
    /// Of the words that the search of the tenant knows, as it writes them, finds the first that doesn't come
    /// before the one it takes. Empty if the search gains nothing from that.
    [[nodiscard]] virtual QString nextWord(qint64 tenant) const = 0;

    /// Run once numbers that another database gave were taken over into a column, so that new ones come
    /// behind them; may be empty.
    [[nodiscard]] virtual QString afterNumbers(const char*, const char*) const { return {}; }

    /// The statement that writes a whole copy to a file, or empty if a program of the database's own does
    /// that.
    [[nodiscard]] virtual QString backup(const QString& file) const = 0;

protected:
    /// Among how many matches, the newest, ranking looks for the best: a word that every item has must not
    /// cost as much as there are items.
    static constexpr int kRankedMatches = 1000;

    /// A text as a statement holds it.
    [[nodiscard]] static QString quoted(const QString& text);
};

} // namespace Itemhub::Store
