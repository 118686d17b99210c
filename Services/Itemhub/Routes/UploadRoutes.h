#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// Resumable uploads by tus 1.0 with its extensions creation, checksum, expiration and termination. A complete
// upload is stored as a content; a version then claims it.

[[nodiscard]] Http::Response beginUpload(Call& call);
[[nodiscard]] Http::Response tellUpload(Call& call);
[[nodiscard]] Http::Response continueUpload(Call& call);
[[nodiscard]] Http::Response endUpload(Call& call);
void addUploadAbilities(const Service& service, Http::Response& response);

/// Makes sure that the content of one of the caller's uploads is stored: completes what was begun before the
/// service was killed.
/// @throws Http::Problem if bytes are missing, or there is no such upload
void finishUpload(Call& call, const QString& upload);
/// Within a transaction: the hash of a finished upload, which this ends.
[[nodiscard]] QString takeUpload(Call& call, const QString& upload);

/// Removes uploads that have expired.
void removeExpiredUploads(Service& service);

} // namespace Itemhub::Routes
