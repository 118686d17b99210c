#pragma once

#include <QByteArray>
#include <QString>

namespace Itemhub::Access {

/// A random text of so many bytes, in letters that stand in addresses (base64url).
[[nodiscard]] QString randomText(size_t bytes);
/// Compares in a time that doesn't tell where they differ.
[[nodiscard]] bool equalSecrets(const QByteArray& one, const QByteArray& other);

/// Argon2id with its parameters, as it is stored. Takes a tenth of a second and 64 MB; only a few run at a
/// time.
[[nodiscard]] QString passwordHash(const QString& password);
/// @param hash empty for somebody who doesn't exist: that takes as long, and is never right
[[nodiscard]] bool passwordMatches(const QString& hash, const QString& password);

/// The service's own key, from which the secrets of signed requests are derived: the database alone tells
/// none. All processes of a service share it.
class MasterKey
{
public:
    /// Reads the key's file, and makes it if there is none. @throws std::runtime_error
    explicit MasterKey(const QString& file);

    /// The secret of a name, for a purpose.
    [[nodiscard]] QString derived(const char* purpose, const QString& name) const;

private:
    QByteArray m_key;
};

} // namespace Itemhub::Access
