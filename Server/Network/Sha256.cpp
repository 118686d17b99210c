#include "Server/Network/Sha256.h"

#include <QByteArray>

#include <openssl/evp.h>

namespace Vs::Network {
namespace {

EVP_MD_CTX* asContext(void* context)
{
    return static_cast<EVP_MD_CTX*>(context);
}

} // namespace

Sha256::Sha256() : m_context(EVP_MD_CTX_new(), [](void* context) { EVP_MD_CTX_free(asContext(context)); })
{
    EVP_DigestInit_ex(asContext(m_context.get()), EVP_sha256(), nullptr);
}

Sha256::~Sha256() = default;

void Sha256::add(QByteArrayView bytes)
{
    EVP_DigestUpdate(asContext(m_context.get()), bytes.data(), static_cast<size_t>(bytes.size()));
}

std::string Sha256::digits()
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    EVP_DigestFinal_ex(asContext(m_context.get()), digest, &size);
    return QByteArray(reinterpret_cast<const char*>(digest), static_cast<qsizetype>(size))
        .toHex()
        .toStdString();
}

} // namespace Vs::Network
