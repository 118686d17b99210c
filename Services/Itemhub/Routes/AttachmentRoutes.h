#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

[[nodiscard]] Http::Response listAttachments(Call& call);
/// With an upload, also its first version.
[[nodiscard]] Http::Response makeAttachment(Call& call);
[[nodiscard]] Http::Response readAttachment(Call& call);
/// The same as XML, with where the newest version's content is.
[[nodiscard]] Http::Response describeAttachment(Call& call);
[[nodiscard]] Http::Response deleteAttachment(Call& call);

[[nodiscard]] Http::Response listVersions(Call& call);
/// From an upload. It names the version that it was made from; if that isn't the newest any more, the answer
/// is 409 and says who made the newer one, and when.
[[nodiscard]] Http::Response makeVersion(Call& call);
[[nodiscard]] Http::Response readVersion(Call& call);
/// The content, or the part that a Range asks for.
[[nodiscard]] Http::Response readContent(Call& call);

} // namespace Itemhub::Routes
