#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace Vs::Native {

/// How an entry is stored in its package.
struct Packing
{
    uint16_t method = 0; ///< As the format numbers them: 0 is stored.
    uint32_t crc = 0;    ///< Of the content.
    uint64_t packed = 0; ///< Bytes in the package.
    uint64_t size = 0;   ///< Bytes of the content.
};

/// A zip package. The library that reads it brings others that take long to load, so the code that uses it is
/// a separate library; this is its only interface. Operations throw std::runtime_error with the cause. One
/// thread at a time.
class ZipReader
{
public:
    virtual ~ZipReader() = default;

    virtual bool has(const std::string& name) const = 0;
    /// The size that the entry claims; refused if no honest package could have it.
    virtual uint64_t size(const std::string& name) const = 0;
    /// Yields exactly `size` bytes in pieces, verified by the entry's checksum at the end.
    using Take = std::function<void(const char* data, size_t size)>;
    virtual void read(const std::string& name, const Take& take) const = 0;
    /// What the package says about an entry.
    virtual Packing packing(const std::string& name) const = 0;
    /// Yields the entry's bytes as they are in the package, without unpacking or checking them.
    virtual void readPacked(const std::string& name, const Take& take) const = 0;
};

} // namespace Vs::Native

/// The entry points of the library, which check the package's directory and its entries' names: for a package
/// in memory, which must outlive the reader, and for an open file, whose descriptor the caller keeps.
extern "C" Vs::Native::ZipReader* quilletReadZip(const char* data, size_t size);
extern "C" Vs::Native::ZipReader* quilletReadZipFile(int descriptor, size_t size);
