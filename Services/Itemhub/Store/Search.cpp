#include "Services/Itemhub/Store/Search.h"

#include <QRegularExpression>

#include <algorithm>

namespace Itemhub::Store {

namespace {

QStringList wordsOf(const QString& text)
{
    static const QRegularExpression blanks("[^\\w]+", QRegularExpression::UseUnicodePropertiesOption);
    constexpr qsizetype kMostWords = 8;
    return text.split(blanks, Qt::SkipEmptyParts).mid(0, kMostWords);
}

/// Words that the search stores unchanged except for case.
bool isPlain(const QString& word)
{
    return std::all_of(word.begin(), word.end(), [](QChar c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
}

/// All words with that prefix if there are only a few, otherwise an empty list; nothing if there are none.
std::optional<QStringList> wholeWords(Connection& connection, const QString& statement,
                                      const QString& beginning)
{
    constexpr qsizetype kMost = 8;
    const QChar first(1); // Sorts before all characters of words.
    const QString known = beginning.toLower();
    QStringList whole;
    for (QString from = known; whole.size() <= kMost; from = whole.back() + first) {
        Rows rows = connection.runBuilt(statement, {from});
        const QString word = rows.next() ? rows.text(0) : QString();
        if (!word.startsWith(known))
            return whole.isEmpty() ? std::nullopt : std::optional(whole);
        whole << word;
    }
    return QStringList();
}

std::vector<SearchWord> asTyped(const QStringList& words)
{
    std::vector<SearchWord> typed;
    for (const QString& word : words)
        typed.push_back({word, {}});
    return typed;
}

/// The words with what is known about each; nothing if one of them occurs in no item.
std::optional<std::vector<SearchWord>> lookedUp(Connection& connection, qint64 tenant,
                                                const QStringList& words)
{
    const QString statement = connection.dialect().nextWord(tenant);
    if (!statement.isEmpty())
        connection.runPlain(connection.dialect().prepareWords(tenant));
    std::vector<SearchWord> found = asTyped(words);
    for (SearchWord& word : found) {
        if (statement.isEmpty() || !isPlain(word.beginning))
            continue;
        const auto whole = wholeWords(connection, statement, word.beginning);
        if (!whole)
            return std::nullopt;
        word.whole = *whole;
    }
    return found;
}

std::vector<qint64> idsOf(Rows rows)
{
    return allOf(std::move(rows), [](const Rows& row) { return row.number(0); });
}

/// Items with a caption similar to a text that has no exact match.
std::vector<qint64> similar(Connection& connection, qint64 tenant, const QStringList& words, qint64 limit)
{
    constexpr qsizetype kTelling = 4; // In letters; anything shorter resembles too much.
    const QString text = words.join(' ').toLower();
    const QString statement = connection.dialect().searchSimilar(tenant);
    if (statement.isEmpty() || text.size() < kTelling)
        return {};
    const QString longest =
        *std::ranges::max_element(words, {}, [](const QString& word) { return word.size(); });
    return idsOf(connection.runBuilt(statement, {text, longest.toLower(), text, limit}));
}

} // namespace

std::vector<Item> search(Connection& connection, qint64 tenant, qint64 account, const QString& text,
                         qint64 limit)
{
    constexpr qsizetype kShort = 2;
    // Some aren't visible to the caller, so more are fetched than wanted.
    constexpr qint64 kSpare = 4;
    const QStringList words = wordsOf(text);
    if (words.isEmpty())
        return {};
    const bool ranked = words.join(QString()).size() > kShort;
    const auto wanted = ranked ? lookedUp(connection, tenant, words) : asTyped(words);
    if (!wanted)
        return {};
    const Dialect& dialect = connection.dialect();
    std::vector<qint64> found = idsOf(connection.runBuilt(dialect.search(tenant, ranked),
                                                          {dialect.searchArgument(*wanted), limit * kSpare}));
    if (found.empty())
        found = similar(connection, tenant, words, limit * kSpare);
    std::vector<Item> items;
    for (const qint64 id : found) {
        if (static_cast<qint64>(items.size()) == limit)
            break;
        if (auto item = findVisibleItem(connection, account, id))
            items.push_back(std::move(*item));
    }
    return items;
}

} // namespace Itemhub::Store
