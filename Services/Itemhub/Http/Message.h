#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Itemhub::Http {

using Fields = std::vector<std::pair<std::string, std::string>>;

/// A failed request, as its client is told: thrown anywhere below a route, it becomes an answer of the type
/// application/problem+json.
class Problem : public std::runtime_error
{
public:
    /// @param code for programs, a word such as "stale_item" that stays the same in all versions
    /// @param detail for people: what, where and why
    Problem(int status, std::string code, const std::string& detail)
        : std::runtime_error(detail), status(status), code(std::move(code))
    {
    }

    /// The same problem with one more header.
    Problem& with(std::string name, std::string value) &
    {
        headers.emplace_back(std::move(name), std::move(value));
        return *this;
    }
    Problem&& with(std::string name, std::string value) &&
    {
        headers.emplace_back(std::move(name), std::move(value));
        return std::move(*this);
    }

    int status;
    std::string code;
    Fields headers;
    std::string
        members; ///< More members of the JSON object, as `"name":value` separated by commas, or empty.
};

/// What a client asks. Names of headers are compared without regard to case.
class Request
{
public:
    /// Takes the next piece of a body; returns whether more is wanted.
    using Taker = std::function<bool(const char* data, size_t size)>;
    /// Asked now and then while the client is silent; returns whether to wait longer.
    using Patience = std::function<bool()>;

    virtual ~Request() = default;

    [[nodiscard]] virtual const std::string& method() const = 0;
    [[nodiscard]] virtual const std::string& path() const = 0;   ///< Percent-decoded.
    [[nodiscard]] virtual const std::string& target() const = 0; ///< Path and query as they were sent.
    [[nodiscard]] virtual std::string remoteAddress() const = 0; ///< Of the client, past a trusted proxy.
    [[nodiscard]] virtual std::string header(std::string_view name) const = 0; ///< Empty if missing.
    [[nodiscard]] virtual bool hasHeader(std::string_view name) const = 0;
    [[nodiscard]] virtual std::optional<std::string> parameter(const std::string& name) const = 0;
    /// All parameters of the query, decoded.
    [[nodiscard]] virtual Fields parameters() const = 0;

    /// Hands the body over piece by piece.
    /// @param patience may be null, for that of all requests
    /// @returns false if it was cut, or refused by the taker, or the patience is at its end
    virtual bool readBody(const Taker& take, const Patience& patience) = 0;

    /// The whole body. @throws Problem with 413 if it is longer, with 400 if it was cut
    [[nodiscard]] std::string body(size_t longest);
};

/// What the client is told. Of body, file and stream, one is used.
struct Response
{
    /// Writes a piece to the client; false when nobody reads any more.
    using Write = std::function<bool(std::string_view)>;

    /// A part of an open file, which is closed when the answer is gone.
    struct File
    {
        explicit File(int descriptor) : descriptor(descriptor) {}
        File(const File&) = delete;
        File& operator=(const File&) = delete;
        ~File();

        int descriptor;
        uint64_t offset = 0, length = 0; ///< In bytes.
    };

    int status = 200;
    Fields headers;
    std::string type = "application/json";
    std::string body;
    std::shared_ptr<File> file;
    /// Called again and again until it returns false; may wait meanwhile.
    std::function<bool(const Write&)> stream;
};

/// An answer that says what failed.
[[nodiscard]] Response responseOf(const Problem& problem);

/// A text as a JSON string with its quotes.
[[nodiscard]] std::string jsonString(std::string_view text);

} // namespace Itemhub::Http
