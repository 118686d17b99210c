#pragma once

#include "Services/Itemhub/Http/Message.h"
#include "Services/Itemhub/Routes/Call.h"
#include "Services/Itemhub/Store/Attachments.h"
#include "Services/Itemhub/Store/Events.h"

#include <QJsonArray>
#include <QJsonObject>

#include <optional>
#include <set>

namespace Itemhub::Routes {

/// Reads the members of a request's JSON object. A member that is missing, of the wrong type, too long or
/// unknown becomes a Problem with 400 that names it.
class Members
{
public:
    explicit Members(const QJsonObject& object) : m_object(object) {}

    static constexpr qsizetype kName = 255, kText = 20'000; ///< Maximum lengths, in characters.

    [[nodiscard]] bool has(const char* name);
    /// A non-empty name.
    [[nodiscard]] QString name(const char* name);
    [[nodiscard]] std::optional<QString> optionalName(const char* name);
    [[nodiscard]] QString fileName(const char* name);
    /// A text, unaltered if it is secret.
    [[nodiscard]] QString text(const char* name, const QString& otherwise);
    [[nodiscard]] QString secret(const char* name);
    [[nodiscard]] std::optional<qint64> number(const char* name, qint64 lowest, qint64 highest);
    [[nodiscard]] std::optional<bool> flag(const char* name);
    [[nodiscard]] Store::Role role(const char* name, Store::Role otherwise);
    /// To be called when all have been read: refuses any others.
    void end() const;

private:
    [[nodiscard]] std::optional<QString> given(const char* name, qsizetype longest);

    const QJsonObject& m_object;
    std::set<QString> m_known;
};

[[nodiscard]] Http::Problem badMember(const char* name, const std::string& why);

[[nodiscard]] QString timeText(qint64 ms);
[[nodiscard]] QJsonValue nameOrNull(Store::Role role); ///< Null for none.
[[nodiscard]] QJsonObject toJson(const Store::Workspace& workspace);
[[nodiscard]] QJsonObject toJson(const Store::Item& item);
[[nodiscard]] QJsonObject toJson(const Store::Attachment& attachment, const std::string& base);
[[nodiscard]] QJsonObject toJson(const Store::Version& version, qint64 attachment, const std::string& base);
[[nodiscard]] QJsonObject toJson(const Store::Comment& comment);
[[nodiscard]] QJsonObject toJson(const Store::Event& event);

[[nodiscard]] Http::Response answer(const QJsonObject& object, int status = 200);
/// @param location of the created object
[[nodiscard]] Http::Response created(const QJsonObject& object, const std::string& location);
[[nodiscard]] Http::Response nothing(); ///< 204

/// A list, with the id after which the next page begins if there may be one.
template <class List, class Convert, class IdOf>
Http::Response listAnswer(const List& list, const Store::Page& page, const char* name, Convert convert,
                          IdOf idOf)
{
    QJsonArray array;
    for (const auto& entry : list)
        array.append(convert(entry));
    QJsonObject object{{name, array}};
    if (static_cast<qint64>(list.size()) == page.limit)
        object.insert("next", idOf(list.back()));
    return answer(object);
}

} // namespace Itemhub::Routes
