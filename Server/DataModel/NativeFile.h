#pragma once

#include "Server/Base/Status.h"

#include <boost/uuid/uuid.hpp>

#include <optional>
#include <string>
#include <vector>

/// What can be told of a native file without opening it as a document. Any thread.
namespace Vs::NativeFile {

struct Summary
{
    struct Asset
    {
        boost::uuids::uuid guid;
        std::wstring name;
        std::string type; ///< AssetType::identifier.
        bool visible = true;
    };

    int formatVersion = 0;
    unsigned softwareVersion = 0; ///< The program that wrote it, as SoftwareVersion counts.
    boost::uuids::uuid document{};
    std::string documentType; ///< DocumentType::identifier.
    std::vector<Asset> assets;
};

/// Reads only the file's table of contents. Nothing, with one error that names the file and the cause, if it
/// can't be read.
[[nodiscard]] std::optional<Summary> summary(const std::wstring& path, Status& status);

/// The bytes of the PNG picture that was saved with the file; empty if it has none or can't be read.
[[nodiscard]] std::string thumbnail(const std::wstring& path);

/// Whether the file is to be opened as a native one, whatever its name is: by its content, or since it can't
/// be looked into for a cause that opening it tells.
[[nodiscard]] bool isNative(const std::wstring& path);

} // namespace Vs::NativeFile
