#pragma once

#include "Services/Itemhub/Http/Message.h"

namespace Itemhub::Routes {

/// Narrows an answer that is a whole file to the part that the request's Range asks for, with status 206, or
/// 416 if the file has no such part. Several ranges at once, other units, and a range of another content
/// (If-Range) are answered by the whole.
void applyRange(const Http::Request& request, const std::string& etag, Http::Response& response);

} // namespace Itemhub::Routes
