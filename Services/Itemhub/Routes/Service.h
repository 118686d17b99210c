#pragma once

#include "Services/Itemhub/Access/Provider.h"
#include "Services/Itemhub/Access/RateLimit.h"
#include "Services/Itemhub/Access/Secrets.h"
#include "Services/Itemhub/Blobs/BlobStore.h"
#include "Services/Itemhub/Blobs/UploadFiles.h"
#include "Services/Itemhub/Config/Config.h"
#include "Services/Itemhub/Routes/EventWatch.h"
#include "Services/Itemhub/Store/Database.h"

#include <memory>

namespace Itemhub::Routes {

/// What all routes share. Nothing in here needs to persist or be known to another process.
struct Service
{
    explicit Service(Config given);

    Config config;
    Store::Database database;
    Access::MasterKey key;
    const std::unique_ptr<Blobs::BlobStore> contents;
    Blobs::BlobStore& blobs;
    Blobs::UploadFiles uploads;
    Access::RateLimit rateLimit;
    Access::Provider provider;
    EventWatch events;
};

} // namespace Itemhub::Routes
