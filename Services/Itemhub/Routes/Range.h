#pragma once

#include "Services/Itemhub/Http/Message.h"

namespace Itemhub::Routes {

/// Narrows a response with a whole file to the part requested by the Range header, with status 206, or 416 if
/// the file has no such part. Multiple ranges, other units, and a range of another content (If-Range) get the
/// whole file.
void applyRange(const Http::Request& request, const std::string& etag, Http::Response& response);

} // namespace Itemhub::Routes
