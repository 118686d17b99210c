#include "Services/Itemhub/Routes/Service.h"

#include "Services/Itemhub/Blobs/ObjectBlobs.h"

namespace Itemhub::Routes {

namespace {

std::unique_ptr<Blobs::BlobStore> contentsOf(const Config& config)
{
    const std::string folder = config.blobs.toStdString();
    if (config.objects.address.empty())
        return std::make_unique<Blobs::FolderBlobs>(folder);
    return std::make_unique<Blobs::ObjectBlobs>(config.objects, folder);
}

} // namespace

Service::Service(Config given)
    : config(std::move(given)),
      database(config.database),
      key(config.keyFile),
      contents(contentsOf(config)),
      blobs(*contents),
      uploads(config.uploads.toStdString()),
      rateLimit(config.requestsPerSecond),
      provider(config.provider),
      // The other half is for those who want an immediate response.
      events(database, static_cast<size_t>(config.connections) / 2)
{
}

} // namespace Itemhub::Routes
