#pragma once

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

/// Where the lifecycle service's files are kept on this machine, accessible to this user only. Any
/// thread, once the profile is determined.
namespace Vs::Itemhub::Places {

using Path = boost::filesystem::path;

/// The root of them all.
[[nodiscard]] Path root();
/// Of the program's own service.
[[nodiscard]] Path ownService();
/// The folder of an account, by Session::Facts::name.
[[nodiscard]] Path account(const std::string& name);
/// An account's pending uploads, and its downloads by hash.
[[nodiscard]] Path queue(const std::string& account);
[[nodiscard]] Path contents(const std::string& account);
/// All accounts' names.
[[nodiscard]] std::vector<std::string> accounts();
/// The name of an account's folder: made of characters that every file system allows, and different for
/// each account of each customer of each service.
[[nodiscard]] std::string nameOf(const std::string& address, const std::string& customer,
                                 const std::string& account);

} // namespace Vs::Itemhub::Places
