#pragma once

#include "Server/DataModel/Recovery/AutoSavedFileInfo.h"

#include <string>
#include <vector>

/// What a user can do with the files of crashed runs: the dialog and the home screen only draw.
namespace Vu::Commands::RecoveryFiles {

/// All that the controller has, in its order.
[[nodiscard]] std::vector<Vs::AutoSavedFileInfo> all();
/// Those that are offered: none if the user wants no auto-save, and what lies on the lifecycle service only
/// to whoever is signed in there.
[[nodiscard]] std::vector<Vs::AutoSavedFileInfo> offered();

/// When it was saved, for a person to read.
[[nodiscard]] std::wstring timeOf(const Vs::AutoSavedFileInfo& file);
/// A row of the list: name, time, and whether the last file was damaged.
[[nodiscard]] std::wstring rowOf(const Vs::AutoSavedFileInfo& file);

/// Opens it as the document that was being worked on. False, with a message, if it stays where it was. May
/// add or remove files, so lists of them are invalid afterwards.
bool open(const Vs::AutoSavedFileInfo& file);
/// Copies it to where the user wants it. False if he doesn't, or, with a message, if that failed.
bool saveAs(const Vs::AutoSavedFileInfo& file);
/// Asks nothing; the controller keeps it for a day.
void remove(const Vs::AutoSavedFileInfo& file);

/// `Document.Open` with that path. Gives the reason if the line failed.
std::wstring openLine(const std::wstring& path);

} // namespace Vu::Commands::RecoveryFiles
