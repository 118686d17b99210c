#pragma once

#include "UI/Commands/CommandRow.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <span>
#include <string>

namespace Vs {
class Document;
class Status;
} // namespace Vs

namespace Vu::Commands {

/// One way to give a picture away.
struct ShareWay
{
    CommandRow row;
    /// Whether it is offered for a document; null for always.
    bool (*isOffered)(const Vs::Document& document);
    /// Where the picture goes if nobody says so. Null for a way that needs no file.
    boost::filesystem::path (*folder)();
    /// Gives the file away, or says why not.
    void (*give)(const boost::filesystem::path& picture, Vs::Document& document, Vs::Status& status);
};

/// In the order of the menu.
std::span<const ShareWay> shareWays();

/// Where a picture of that name can be written into the folder: "name.png", or, where something is called so,
/// with a number behind it. `isTaken`, if it is given, knows names that are taken elsewhere.
[[nodiscard]] boost::filesystem::path
freePicturePath(const boost::filesystem::path& folder, const std::wstring& name,
                const std::function<bool(const std::string& file)>& isTaken = {});

} // namespace Vu::Commands
