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

/// One way to share a picture.
struct ShareWay
{
    CommandRow row;
    /// Whether it is offered for a document; null means always.
    bool (*isOffered)(const Vs::Document& document);
    /// The default folder of the picture. Null for a way that needs no file.
    boost::filesystem::path (*folder)();
    /// Shares the file, or says why not.
    void (*give)(const boost::filesystem::path& picture, Vs::Document& document, Vs::Status& status);
};

/// In menu order.
std::span<const ShareWay> shareWays();

/// The path for a picture of that name in the folder: "name.png", or with a number appended if that exists.
/// `isTaken`, if given, reports names taken elsewhere.
[[nodiscard]] boost::filesystem::path
freePicturePath(const boost::filesystem::path& folder, const std::wstring& name,
                const std::function<bool(const std::string& file)>& isTaken = {});

} // namespace Vu::Commands
