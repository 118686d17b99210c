#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

[[nodiscard]] Http::Response listAttachments(Call& call);
/// If given an upload, also makes the first version.
[[nodiscard]] Http::Response makeAttachment(Call& call);
[[nodiscard]] Http::Response readAttachment(Call& call);
/// The same as XML, including where the newest version's content is.
[[nodiscard]] Http::Response describeAttachment(Call& call);
[[nodiscard]] Http::Response deleteAttachment(Call& call);

[[nodiscard]] Http::Response listVersions(Call& call);
/// Made from an upload. The request names the version it is based on; if that is no longer the newest, the
/// response is 409 and says who made the newer one, and when.
[[nodiscard]] Http::Response makeVersion(Call& call);
[[nodiscard]] Http::Response readVersion(Call& call);
/// The content, or the part requested by a Range header.
[[nodiscard]] Http::Response readContent(Call& call);

} // namespace Itemhub::Routes
