#pragma once

#include "Services/Itemhub/Blobs/BlobStore.h"

#include <cstdint>
#include <string>

namespace Itemhub::Blobs {

/// Where an object store is, and this service's credentials there.
struct ObjectPlace
{
    std::string
        address; ///< Of the store, without a slash at the end; the bucket is the first part of its paths.
    std::string bucket; ///< An existing one.
    std::string region;
    std::string keyId, secret;
    uint64_t nearBytes = 0; ///< The size of the local cache of recently requested contents.
};

/// Contents as objects of an S3-compatible store, accessed by signed requests (AWS Signature Version 4). What
/// was stored or requested is also cached in a local folder, as long as there is room; each content is
/// checked against its hash when it arrives, and a damaged one is opened as an empty file. If the store can't
/// be reached or refuses a request, std::system_error with host_unreachable is thrown.
class ObjectBlobs : public BlobStore
{
public:
    /// @param folder of the local cache
    ObjectBlobs(ObjectPlace place, const std::string& folder);

    void put(const std::string& sha256, const std::string& file) override;
    [[nodiscard]] Descriptor open(const std::string& sha256) const override;
    [[nodiscard]] int64_t size(const std::string& sha256) const override;
    void remove(const std::string& sha256) override;
    void each(const std::function<void(const std::string& sha256, int64_t age)>& tell) const override;

private:
    void makeRoom() const;

    const ObjectPlace m_place;
    mutable FolderBlobs m_near;
    const std::string m_folder;
};

} // namespace Itemhub::Blobs
