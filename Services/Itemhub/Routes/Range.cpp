#include "Services/Itemhub/Routes/Range.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace Itemhub::Routes {

namespace {

std::optional<uint64_t> numberOf(std::string_view text)
{
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

} // namespace

void applyRange(const Http::Request& request, const std::string& etag, Http::Response& response)
{
    constexpr std::string_view kUnit = "bytes=";
    const std::string header = request.header("Range");
    const std::string condition = request.header("If-Range");
    const size_t dash = header.find('-');
    if (!header.starts_with(kUnit) || dash == std::string::npos || header.find(',') != std::string::npos ||
        (!condition.empty() && condition != etag))
        return;
    const std::string_view text = header;
    const auto first = numberOf(text.substr(kUnit.size(), dash - kUnit.size())),
               last = numberOf(text.substr(dash + 1));
    const uint64_t size = response.file->length;
    uint64_t begin = 0, end = size;
    if (first) {
        begin = *first;
        end = last && *last < size ? *last + 1 : size;
    } else if (last) {
        begin = size - std::min(*last, size);
    } else {
        return;
    }
    if (begin >= end) {
        response.file.reset();
        response.status = 416;
        response.headers.emplace_back("Content-Range", "bytes */" + std::to_string(size));
        return;
    }
    response.status = 206;
    response.file->offset = begin;
    response.file->length = end - begin;
    response.headers.emplace_back("Content-Range", "bytes " + std::to_string(begin) + '-' +
                                                       std::to_string(end - 1) + '/' + std::to_string(size));
}

} // namespace Itemhub::Routes
