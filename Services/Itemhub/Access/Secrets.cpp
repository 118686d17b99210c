#include "Services/Itemhub/Access/Secrets.h"

#include "Services/Itemhub/Blobs/Descriptor.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <semaphore>
#include <sodium.h>
#include <stdexcept>
#include <unistd.h>

namespace Itemhub::Access {

namespace {

constexpr QByteArray::Base64Options kUrlSafe = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;
constexpr qsizetype kKeyLength = crypto_auth_hmacsha256_KEYBYTES;

void start()
{
    if (sodium_init() < 0)
        throw std::runtime_error("There are no random numbers.");
}

QByteArray randomBytes(size_t count)
{
    start();
    QByteArray bytes(static_cast<qsizetype>(count), '\0');
    randombytes_buf(bytes.data(), count);
    return bytes;
}

/// Each hash takes 64 MB, and anybody may request one.
class PasswordTurn
{
public:
    PasswordTurn() { s_turns.acquire(); }
    ~PasswordTurn() { s_turns.release(); }

    PasswordTurn(const PasswordTurn&) = delete;
    PasswordTurn& operator=(const PasswordTurn&) = delete;

private:
    static inline std::counting_semaphore<2> s_turns{2};
};

QByteArray keyOf(const QString& file)
{
    QFile stored(file);
    return stored.open(QIODevice::ReadOnly) ? QByteArray::fromHex(stored.readAll().trimmed()) : QByteArray();
}

/// Written under a temporary name and linked to its final one when complete; the first process wins.
void makeKey(const QString& file)
{
    const QByteArray path = QFile::encodeName(file), beside = path + ".new-" + QByteArray::number(::getpid());
    const QByteArray text = randomBytes(kKeyLength).toHex() + '\n';
    const Blobs::Descriptor descriptor(
        ::open(beside.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
    const bool made =
        descriptor.isValid() &&
        ::write(descriptor.get(), text.constData(), static_cast<size_t>(text.size())) == text.size() &&
        ::fsync(descriptor.get()) == 0 &&
        (::link(beside.constData(), path.constData()) == 0 || errno == EEXIST);
    const int error = errno;
    ::unlink(beside.constData());
    if (!made)
        throw std::runtime_error("Cannot make the service's key " + path.toStdString() + ": " +
                                 std::strerror(error));
}

} // namespace

QString randomText(size_t bytes)
{
    return QString::fromLatin1(randomBytes(bytes).toBase64(kUrlSafe));
}

bool equalSecrets(const QByteArray& one, const QByteArray& other)
{
    return one.size() == other.size() && !one.isEmpty() &&
           sodium_memcmp(one.constData(), other.constData(), static_cast<size_t>(one.size())) == 0;
}

QString passwordHash(const QString& password)
{
    start();
    const PasswordTurn turn;
    const QByteArray text = password.toUtf8();
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    if (crypto_pwhash_str(hash.data(), text.constData(), static_cast<unsigned long long>(text.size()),
                          crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        throw std::runtime_error("There is not enough memory to hash a password.");
    return QString::fromLatin1(hash.data());
}

bool passwordMatches(const QString& hash, const QString& password)
{
    static const QString nobody = passwordHash(randomText(16));
    start();
    const PasswordTurn turn;
    const QByteArray text = password.toUtf8(), stored = (hash.isEmpty() ? nobody : hash).toLatin1();
    return crypto_pwhash_str_verify(stored.constData(), text.constData(),
                                    static_cast<unsigned long long>(text.size())) == 0 &&
           !hash.isEmpty();
}

MasterKey::MasterKey(const QString& file)
{
    if (!QFile::exists(file))
        makeKey(file);
    m_key = keyOf(file);
    if (m_key.size() != kKeyLength)
        throw std::runtime_error("The service's key " + file.toStdString() + " is not one: it must be " +
                                 std::to_string(2 * kKeyLength) + " hexadecimal digits.");
}

QString MasterKey::derived(const char* purpose, const QString& name) const
{
    const QByteArray text = QByteArray(purpose) + ':' + name.toUtf8();
    QByteArray secret(crypto_auth_hmacsha256_BYTES, '\0');
    crypto_auth_hmacsha256(reinterpret_cast<unsigned char*>(secret.data()),
                           reinterpret_cast<const unsigned char*>(text.constData()),
                           static_cast<unsigned long long>(text.size()),
                           reinterpret_cast<const unsigned char*>(m_key.constData()));
    return QString::fromLatin1(secret.toBase64(kUrlSafe));
}

} // namespace Itemhub::Access
