#pragma once

#include <QByteArray>
#include <QString>

namespace Itemhub::Access {

/// A random text of that many bytes in URL-safe characters (base64url).
[[nodiscard]] QString randomText(size_t bytes);
/// Compares in constant time.
[[nodiscard]] bool equalSecrets(const QByteArray& one, const QByteArray& other);

/// Argon2id with its parameters, in the form that is stored. Takes a tenth of a second and 64 MB; only a few
/// run at the same time.
[[nodiscard]] QString passwordHash(const QString& password);
/// @param hash empty for an account that doesn't exist: that takes just as long, and never matches
[[nodiscard]] bool passwordMatches(const QString& hash, const QString& password);

/// The service's own key, from which the secrets of signed requests are derived, so that the database alone
/// doesn't reveal any. Shared by all processes of a service.
class MasterKey
{
public:
    /// Reads the key file, and creates it if it doesn't exist. @throws std::runtime_error
    explicit MasterKey(const QString& file);

    /// The secret derived from a name for a purpose.
    [[nodiscard]] QString derived(const char* purpose, const QString& name) const;

private:
    QByteArray m_key;
};

} // namespace Itemhub::Access
