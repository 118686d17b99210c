#include "Server/Itemhub/Client/JsonReader.h"

#include "Server/Itemhub/WebServices.h"

#include <algorithm>
#include <cmath>

namespace Vs::Itemhub {
namespace {

// Beyond this, JSON numbers are no longer exact.
constexpr double kLargest = 9007199254740991.0;
constexpr qsizetype kLongest = 100000;

} // namespace

JsonReader::JsonReader(QJsonObject object, std::string action)
    : m_object(std::move(object)), m_action(std::move(action))
{
}

void JsonReader::refuse(const char* name, const char* wanted) const
{
    throw Corvane::Itemstore::WebServices::PayloadException(m_action + " failed: \"" + name +
                                                            "\" of the answer is not " + wanted);
}

bool JsonReader::has(const char* name) const
{
    const QJsonValue value = m_object[QLatin1String(name)];
    return !value.isNull() && !value.isUndefined();
}

std::int64_t JsonReader::number(const char* name, std::int64_t lowest) const
{
    const QJsonValue value = m_object[QLatin1String(name)];
    const double number = value.toDouble(-1);
    if (!value.isDouble() || number != std::floor(number) || number > kLargest ||
        number < static_cast<double>(lowest))
        refuse(name, "a whole number");
    return static_cast<std::int64_t>(number);
}

std::int64_t JsonReader::idOrNone(const char* name) const
{
    return has(name) ? number(name, 0) : 0;
}

std::string JsonReader::text(const char* name) const
{
    const QJsonValue value = m_object[QLatin1String(name)];
    if (!value.isString() || value.toString().size() > kLongest)
        refuse(name, "a text");
    return value.toString().toStdString();
}

bool JsonReader::flag(const char* name) const
{
    const QJsonValue value = m_object[QLatin1String(name)];
    if (!value.isBool())
        refuse(name, "true or false");
    return value.toBool();
}

std::string JsonReader::sha256(const char* name) const
{
    std::string found = text(name);
    if (!isSha256(QString::fromStdString(found)))
        refuse(name, "a SHA-256");
    return found;
}

QJsonArray JsonReader::list(const char* name) const
{
    const QJsonValue value = m_object[QLatin1String(name)];
    if (!value.isArray())
        refuse(name, "a list");
    QJsonArray list = value.toArray();
    if (!std::all_of(list.begin(), list.end(), [](const QJsonValue& each) { return each.isObject(); }))
        refuse(name, "a list of objects");
    return list;
}

QJsonObject JsonReader::object(const char* name) const
{
    const QJsonValue value = m_object[QLatin1String(name)];
    if (!value.isObject())
        refuse(name, "an object");
    return value.toObject();
}

std::int64_t JsonReader::next() const
{
    return m_object.contains(QLatin1String("next")) ? number("next", 0) : 0;
}

bool isSha256(const QString& text)
{
    constexpr qsizetype kDigits = 64;
    return text.size() == kDigits && std::all_of(text.begin(), text.end(), [](QChar c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

} // namespace Vs::Itemhub
