#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace Itemhub::Blobs {

/// A hash that is fed piece by piece.
class Digest
{
public:
    enum class Kind { Sha1, Sha256 };

    explicit Digest(Kind kind = Kind::Sha256);
    ~Digest();

    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;

    void add(std::string_view data);
    /// The hash of all that was added, as bytes. Nothing may be added afterwards.
    [[nodiscard]] std::string result();
    /// The same in lower-case hexadecimal digits.
    [[nodiscard]] std::string hexResult();

    [[nodiscard]] static std::string hexOf(std::string_view data); ///< Of one piece, by SHA-256.

private:
    struct Free
    {
        void operator()(evp_md_ctx_st* context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> m_context;
};

/// Adds an open file's bytes from an offset up to another one. @returns whether all could be read
[[nodiscard]] bool addFile(Digest& digest, int descriptor, uint64_t from, uint64_t to);

} // namespace Itemhub::Blobs
