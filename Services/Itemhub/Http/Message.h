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

/// A failed request, as reported to the client: thrown anywhere below a route, it becomes a response of type
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

    /// The same problem with an additional header.
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
        members; ///< Additional members of the JSON object, as `"name":value` separated by commas, or empty.
};

/// A client's request. Header names are case-insensitive.
class Request
{
public:
    /// Takes the next piece of a body; returns whether to continue.
    using Taker = std::function<bool(const char* data, size_t size)>;
    /// Called now and then while the client is silent; returns whether to keep waiting.
    using Patience = std::function<bool()>;

    virtual ~Request() = default;

    [[nodiscard]] virtual const std::string& method() const = 0;
    [[nodiscard]] virtual const std::string& path() const = 0;   ///< Percent-decoded.
    [[nodiscard]] virtual const std::string& target() const = 0; ///< Path and query as sent.
    [[nodiscard]] virtual std::string
    remoteAddress() const = 0; ///< The client's, as seen by a trusted proxy if there is one.
    [[nodiscard]] virtual std::string header(std::string_view name) const = 0; ///< Empty if missing.
    [[nodiscard]] virtual bool hasHeader(std::string_view name) const = 0;
    [[nodiscard]] virtual std::optional<std::string> parameter(const std::string& name) const = 0;
    /// All query parameters, decoded.
    [[nodiscard]] virtual Fields parameters() const = 0;

    /// Passes on the body piece by piece.
    /// @param patience may be null for the default
    /// @returns false if the body was cut short or refused by the taker, or patience ran out
    virtual bool readBody(const Taker& take, const Patience& patience) = 0;

    /// The whole body. @throws Problem with 413 if it is longer, with 400 if it was cut short
    [[nodiscard]] std::string body(size_t longest);
};

/// What the client receives. Only one of body, file and stream is used.
struct Response
{
    /// Writes a piece to the client; false once nobody is reading any more.
    using Write = std::function<bool(std::string_view)>;

    /// A part of an open file, which is closed once the response has been sent.
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
    /// Called repeatedly until it returns false; may block.
    std::function<bool(const Write&)> stream;
};

/// A response that says what failed.
[[nodiscard]] Response responseOf(const Problem& problem);

/// A text as a quoted JSON string.
[[nodiscard]] std::string jsonString(std::string_view text);

} // namespace Itemhub::Http
