#pragma once

#include "Server/Base/TextCommand.h"

#include <string>

/// The answers of the lines of the area "Itemhub": one line for each thing, separated by tabs. All may throw
/// what ItemhubUtilities throws.
namespace Vu::Commands::ItemhubLines {

[[nodiscard]] std::wstring account();
/// Reports that nobody is signed in.
[[nodiscard]] std::wstring nobody();
[[nodiscard]] std::wstring workspaces();
[[nodiscard]] std::wstring items(int workspaceId);
[[nodiscard]] std::wstring attachments(int itemId);
[[nodiscard]] std::wstring versions(int itemId);
[[nodiscard]] std::wstring found(const std::wstring& text);
[[nodiscard]] std::wstring favourites();
[[nodiscard]] std::wstring comments(int itemId);
[[nodiscard]] std::wstring pending();

/// Through their commands, which a recording includes.
[[nodiscard]] Vs::TextCommandResult open(int itemId, const Vs::TextCommandParameters& parameters);
[[nodiscard]] Vs::TextCommandResult insert(int itemId, const Vs::TextCommandParameters& parameters);

} // namespace Vu::Commands::ItemhubLines
