#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace Itemhub::Blobs {

/// An incremental hash.
class Digest
{
public:
    enum class Kind { Sha1, Sha256 };

    explicit Digest(Kind kind = Kind::Sha256);
    ~Digest();

    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;

    void add(std::string_view data);
    /// The hash of everything added, as bytes. Nothing may be added afterwards.
    [[nodiscard]] std::string result();
    /// The same in lower-case hexadecimal digits.
    [[nodiscard]] std::string hexResult();

    [[nodiscard]] static std::string hexOf(std::string_view data); ///< SHA-256 of a single piece.

private:
    struct Free
    {
        void operator()(evp_md_ctx_st* context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> m_context;
};

/// Adds an open file's bytes from one offset up to another. @returns whether all could be read
[[nodiscard]] bool addFile(Digest& digest, int descriptor, uint64_t from, uint64_t to);

} // namespace Itemhub::Blobs
