#pragma once

#include "Server/Skyvault/Drive.h"
#include "UI/Commands/Cloud/CloudDialog.h"

#include <QIcon>
#include <QString>
#include <QStringList>

/// The texts of the cloud drive's dialogs about a server, in terms that users know.
namespace Vu::Commands::CloudTexts {

/// From the string table of the commands.
[[nodiscard]] QString text(const char* key, const char* english);
/// The text with the drive's trade name for "%1".
[[nodiscard]] QString named(const QString& text);
/// A file's or folder's name, which others have chosen: characters that would break the line or change its
/// direction are shown as marks.
[[nodiscard]] QString shown(const std::string& name);
/// A picture of the cloud drive that no command uses: "Folder".
[[nodiscard]] QIcon icon(const char* name);
/// Why a request failed.
[[nodiscard]] QString failure(const Vs::Cloud::DriveResult& result);
/// Why no drive was found at the address that the user typed, and what to do about it.
[[nodiscard]] QString notFound(const Vs::Cloud::DriveResult& result, const QString& typed);
/// Who is signed in, where, and whether the server can be reached.
[[nodiscard]] QString account();
/// Of the dialog in which the user chooses this.
[[nodiscard]] QString title(CloudDialog::Kind kind);
/// What its list shows while the drive can't be reached.
[[nodiscard]] QString away(CloudDialog::Kind kind);
/// The text shown if no entry is listed; `hasEntries` if there are some that weren't asked for.
[[nodiscard]] QString nothingListed(bool isRead, bool hasEntries, bool isAway);
/// The consequences of a server without locks and conditional requests for people who work on the same files.
[[nodiscard]] QString unsafe();
/// The detected capabilities of the server, one per line.
[[nodiscard]] QStringList traits(const Vs::Cloud::DriveTraits& traits);

} // namespace Vu::Commands::CloudTexts
