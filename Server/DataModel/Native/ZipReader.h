#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace Vs::Native {

/// How an entry lies in its package.
struct Packing
{
    uint16_t method = 0; ///< As the format numbers them: 0 stored as it is.
    uint32_t crc = 0;    ///< Of the content.
    uint64_t packed = 0; ///< Bytes in the package.
    uint64_t size = 0;   ///< Bytes of the content.
};

/// A zip package. The library that reads it brings others that take long to load, so what stands on
/// it is a library of its own; this is all that is seen of it. Operations throw std::runtime_error with the
/// cause. One thread at a time.
class ZipReader
{
public:
    virtual ~ZipReader() = default;

    virtual bool has(const std::string& name) const = 0;
    /// What the entry says it holds; refused where no honest package could.
    virtual uint64_t size(const std::string& name) const = 0;
    /// Gives exactly `size` bytes in pieces, checked against the entry's checksum at the end.
    using Take = std::function<void(const char* data, size_t size)>;
    virtual void read(const std::string& name, const Take& take) const = 0;
    /// What the package says of an entry.
    virtual Packing packing(const std::string& name) const = 0;
    /// Gives the entry's bytes as they lie in the package, without unpacking or checking them.
    virtual void readPacked(const std::string& name, const Take& take) const = 0;
};

} // namespace Vs::Native

/// The entry points of the library, which check the package's directory and its entries' names: for a package
/// in memory, which must outlive the reader, and for a file that is open, whose descriptor the caller keeps.
extern "C" Vs::Native::ZipReader* quilletReadZip(const char* data, size_t size);
extern "C" Vs::Native::ZipReader* quilletReadZipFile(int descriptor, size_t size);
