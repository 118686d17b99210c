#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace Vs::Exchange {

/// Distinguishes exact data from any others that somebody could forge.
using DataDigest = std::array<char, 32>;
DataDigest digestOf(std::string_view exactData);
std::string hexOf(const DataDigest& digest);

/// The exact data that the programs of this user wrote, by their digests, in a file that only this user can
/// read or write. It forgets the oldest. Any thread; several programs may use one file.
class KnownData
{
public:
    explicit KnownData(std::string path) : m_path(std::move(path)) {}

    bool contains(const DataDigest& digest) const;
    /// If it can't be stored, it is unknown next time.
    void add(const DataDigest& digest);

private:
    std::string m_path;
};

} // namespace Vs::Exchange
