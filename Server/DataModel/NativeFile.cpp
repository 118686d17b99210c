#include "Server/DataModel/NativeFile.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Model/PlainFile.h"
#include "Server/DataModel/Native/Manifest.h"
#include "Server/DataModel/Native/Package.h"

#include <stdexcept>

namespace Vs::NativeFile {

namespace {

/// A package that can't be examined may well have one.
bool hasManifest(const std::string& path)
{
    try {
        return Native::Package(path).has(Native::kManifestName);
    } catch (const std::runtime_error&) {
        return true;
    }
}

} // namespace

std::optional<Summary> summary(const std::wstring& path, Status& status)
{
    try {
        const Native::Package package(Strings::toBytes(path));
        const auto manifest =
            Native::Manifest::read(package.read(Native::kManifestName, Native::Package::kMostManifest));
        Summary summary{manifest.version, manifest.software, manifest.document, manifest.documentType, {}};
        for (const Native::Manifest::Asset& asset : manifest.assets)
            summary.assets.push_back({asset.guid, asset.name, asset.type, asset.visible});
        return summary;
    } catch (const std::runtime_error& error) {
        status.addError(L"\"" + path + L"\" can't be read: " + Strings::widen(error.what()) + L".");
        return std::nullopt;
    }
}

std::string thumbnail(const std::wstring& path)
{
    try {
        const Native::Package package(Strings::toBytes(path));
        const std::string bytes = package.read(Native::kThumbnailName, Native::Package::kMostPicture);
        return Native::isPicture(bytes) ? bytes : std::string();
    } catch (const std::runtime_error&) {
        return {};
    }
}

bool isNative(const std::wstring& path)
{
    try {
        const std::string name = Strings::toBytes(path);
        char bytes[128];
        PlainFile file(name);
        const std::string_view beginning(bytes, file.read(bytes, sizeof bytes));
        // Those of older layouts, and what another program packed anew, don't begin with their type.
        return Native::beginsAsNative(beginning) || (beginning.starts_with("PK\3\4") && hasManifest(name));
    } catch (const std::runtime_error&) {
        return true;
    }
}

} // namespace Vs::NativeFile
