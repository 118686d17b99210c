#pragma once

#include "Services/Itemhub/Blobs/BlobStore.h"

#include <cstdint>
#include <string>

namespace Itemhub::Blobs {

/// Where a store of objects is, and by what it knows this service.
struct ObjectPlace
{
    std::string
        address; ///< Of the store, without a slash at the end; the bucket is the first part of its paths.
    std::string bucket; ///< Which is there.
    std::string region;
    std::string keyId, secret;
    uint64_t nearBytes = 0; ///< How much is kept here of what was asked for last.
};

/// Contents as objects of a store that speaks S3, by requests that are signed (AWS Signature Version 4). What
/// was put or asked for lies in a folder of this machine as well, as long as there is room; each is compared
/// with its hash when it comes, and of a damaged one the file that is opened is empty. A store that can't be
/// reached, or refuses, is a std::system_error of host_unreachable.
class ObjectBlobs : public BlobStore
{
public:
    /// @param folder of what is kept here
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
