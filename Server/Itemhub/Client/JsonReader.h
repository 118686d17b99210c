#pragma once

#include <QJsonArray>
#include <QJsonObject>

#include <cstdint>
#include <string>

namespace Vs::Itemhub {

/// Reads members of a response object. A member that is missing, has the wrong type or is out of range
/// causes a PayloadException that names it.
class JsonReader
{
public:
    /// `action` as in Answers.
    JsonReader(QJsonObject object, std::string action);

    /// Whether the member exists and isn't null.
    [[nodiscard]] bool has(const char* name) const;
    /// An integer of at least `lowest`.
    [[nodiscard]] std::int64_t number(const char* name, std::int64_t lowest) const;
    [[nodiscard]] std::int64_t id(const char* name) const { return number(name, 1); }
    /// 0 if the member is null or missing.
    [[nodiscard]] std::int64_t idOrNone(const char* name) const;
    [[nodiscard]] std::string text(const char* name) const;
    [[nodiscard]] bool flag(const char* name) const;
    /// 64 hexadecimal digits.
    [[nodiscard]] std::string sha256(const char* name) const;
    [[nodiscard]] QJsonArray list(const char* name) const;
    [[nodiscard]] QJsonObject object(const char* name) const;
    /// 0 if there is no such member.
    [[nodiscard]] std::int64_t next() const;
    [[nodiscard]] const std::string& action() const { return m_action; }

private:
    [[noreturn]] void refuse(const char* name, const char* wanted) const;

    QJsonObject m_object;
    std::string m_action;
};

/// Whether the text has the form of a SHA-256.
[[nodiscard]] bool isSha256(const QString& text);

} // namespace Vs::Itemhub
