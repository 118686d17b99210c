#pragma once

#include "Services/Itemhub/Routes/Call.h"

namespace Itemhub::Routes {

// Resumable uploads by tus 1.0 with its extensions creation, checksum, expiration and termination. An upload
// whose all bytes came is kept as a content; a version then takes it.

[[nodiscard]] Http::Response beginUpload(Call& call);
[[nodiscard]] Http::Response tellUpload(Call& call);
[[nodiscard]] Http::Response continueUpload(Call& call);
[[nodiscard]] Http::Response endUpload(Call& call);
void addUploadAbilities(const Service& service, Http::Response& response);

/// Sees to it that the content of an upload of the caller's is kept: what was begun before the service was
/// killed is done now.
/// @throws Http::Problem if bytes are missing, or there is no such upload
void finishUpload(Call& call, const QString& upload);
/// Within a transaction: the hash of a finished upload, which is over with this.
[[nodiscard]] QString takeUpload(Call& call, const QString& upload);

/// Removes uploads that have expired.
void removeExpiredUploads(Service& service);

} // namespace Itemhub::Routes
