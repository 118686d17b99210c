#include "Services/Itemhub/Blobs/Digest.h"

#include <algorithm>
#include <array>
#include <openssl/evp.h>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace Itemhub::Blobs {

Digest::Digest(Kind kind) : m_context(EVP_MD_CTX_new())
{
    const EVP_MD* const algorithm = kind == Kind::Sha1 ? EVP_sha1() : EVP_sha256();
    if (!m_context || EVP_DigestInit_ex(m_context.get(), algorithm, nullptr) != 1)
        throw std::runtime_error("A hash cannot be computed.");
}

Digest::~Digest() = default;

void Digest::Free::operator()(evp_md_ctx_st* context) const
{
    EVP_MD_CTX_free(context);
}

void Digest::add(std::string_view data)
{
    if (EVP_DigestUpdate(m_context.get(), data.data(), data.size()) != 1)
        throw std::runtime_error("A hash cannot be computed.");
}

std::string Digest::result()
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes;
    unsigned size = 0;
    if (EVP_DigestFinal_ex(m_context.get(), bytes.data(), &size) != 1)
        throw std::runtime_error("A hash cannot be computed.");
    return std::string(bytes.begin(), bytes.begin() + size);
}

std::string Digest::hexResult()
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const char byte : result()) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

std::string Digest::hexOf(std::string_view data)
{
    Digest digest;
    digest.add(data);
    return digest.hexResult();
}

bool addFile(Digest& digest, int descriptor, uint64_t from, uint64_t to)
{
    std::vector<char> piece(size_t(256) * 1024);
    while (from < to) {
        const ssize_t got = ::pread(descriptor, piece.data(), std::min<uint64_t>(piece.size(), to - from),
                                    static_cast<off_t>(from));
        if (got <= 0)
            return false;
        digest.add({piece.data(), static_cast<size_t>(got)});
        from += static_cast<uint64_t>(got);
    }
    return true;
}

} // namespace Itemhub::Blobs
