#pragma once

#include "Services/Itemhub/Blobs/Descriptor.h"

#include <cstdint>
#include <functional>
#include <string>

namespace Itemhub::Blobs {

/// Where contents are kept, by their SHA-256 in lower-case hexadecimal digits. Anything that has these
/// functions can keep them: a folder, possibly on a network, or an object store. Thread-safe, also across
/// processes.
class BlobStore
{
public:
    virtual ~BlobStore() = default;

    /// Stores the content of a file, which stays where it is. Once this returns, the content is on disk.
    /// @throws std::system_error
    virtual void put(const std::string& sha256, const std::string& file) = 0;
    /// @returns a descriptor; an invalid one if there is no such content
    [[nodiscard]] virtual Descriptor open(const std::string& sha256) const = 0;
    /// @returns the size in bytes, or -1 if there is no such content
    [[nodiscard]] virtual int64_t size(const std::string& sha256) const = 0;
    virtual void remove(const std::string& sha256) = 0;
    /// Reports each content: its hash, and its age in seconds.
    virtual void each(const std::function<void(const std::string& sha256, int64_t age)>& tell) const = 0;
};

/// Contents as files, in folders named by two digits.
class FolderBlobs : public BlobStore
{
public:
    explicit FolderBlobs(std::string folder);

    void put(const std::string& sha256, const std::string& file) override;
    [[nodiscard]] Descriptor open(const std::string& sha256) const override;
    [[nodiscard]] int64_t size(const std::string& sha256) const override;
    void remove(const std::string& sha256) override;

    void each(const std::function<void(const std::string& sha256, int64_t age)>& tell) const override;

private:
    [[nodiscard]] std::string pathOf(const std::string& sha256) const;

    std::string m_folder;
};

} // namespace Itemhub::Blobs
