#pragma once

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

/// Where the lifecycle service's files lie on this machine. All of them belong to this user alone. Any
/// thread, once the profile is settled.
namespace Vs::Itemhub::Places {

using Path = boost::filesystem::path;

/// Of everything.
[[nodiscard]] Path root();
/// Of the program's own service.
[[nodiscard]] Path ownService();
/// Of an account, by Session::Facts::name.
[[nodiscard]] Path account(const std::string& name);
/// Of what an account has to upload, and of what it has downloaded, by hash.
[[nodiscard]] Path queue(const std::string& account);
[[nodiscard]] Path contents(const std::string& account);
/// All accounts' names.
[[nodiscard]] std::vector<std::string> accounts();
/// The name of an account's folder: of letters that every file system has, and another one for each account
/// of each customer of each service.
[[nodiscard]] std::string nameOf(const std::string& address, const std::string& customer,
                                 const std::string& account);

} // namespace Vs::Itemhub::Places
