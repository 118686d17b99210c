#include "Services/Itemhub/Routes/Service.h"

namespace Itemhub::Routes {

Service::Service(Config given)
    : config(std::move(given)),
      database(config.database),
      key(config.keyFile),
      blobs(config.blobs.toStdString()),
      uploads(config.uploads.toStdString()),
      rateLimit(config.requestsPerSecond),
      provider(config.provider),
      // The other half stays for those who want an answer now.
      events(database, static_cast<size_t>(config.connections) / 2)
{
}

} // namespace Itemhub::Routes
