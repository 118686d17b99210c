#pragma once

#include <boost/uuid/uuid.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Vs::Native {

/// A native file's table of contents. A program ignores what it doesn't know in here, and what its own
/// version doesn't write is lost at its next save; so anything that must survive an older program is a
/// separate entry, in `extras`. The version is raised only where an older program would show or save
/// something wrong.
struct Manifest
{
    /// The layout that is written. All older ones can be read; see the table in the .cpp.
    static constexpr int kVersion = 5;

    struct Asset
    {
        boost::uuids::uuid guid{};
        std::wstring name;
        std::string type; ///< AssetType::identifier.
        bool visible = true;
        boost::uuids::uuid parent{}; ///< For a hidden asset; otherwise nil.
        std::vector<boost::uuids::uuid> references;
        std::map<std::string, std::wstring> settings;
        std::string part;   ///< The package's entry with its model; empty if the asset is empty.
        uint64_t place = 0; ///< Where the entry's content begins in the file; 0 if that isn't known.
        uint64_t size = 0;
        uint64_t hash = 0; ///< ModelFile::hash; 0 if it isn't known.
    };

    /// An entry that a program may keep without understanding it: data of a service, a picture of one asset.
    /// An entry that isn't listed anywhere belongs to nobody and is lost at the next save.
    struct Extra
    {
        std::string entry;
        boost::uuids::uuid asset{}; ///< The asset that it belongs to, and is removed with; nil if it belongs
                                    ///< to the document.
        /// When a program that doesn't know it must omit it.
        bool untilChanged = false; ///< When the asset's model, or any model, was changed.
        bool untilMoved = false;   ///< When the document is saved under another name.
    };

    int version = kVersion;
    unsigned software = 0; ///< Counted like SoftwareVersion.
    boost::uuids::uuid document{};
    std::string documentType;         ///< DocumentType::identifier.
    boost::uuids::uuid activeAsset{}; ///< Nil in a document without visible assets.
    std::vector<Asset> assets;        ///< Parents before their hidden assets.
    /// Only those that this version can keep: one with an unknown condition is ignored.
    std::vector<Extra> extras;

    /// Reads the text in any known version and checks that its parts are consistent. Throws
    /// std::runtime_error with the cause.
    static Manifest read(std::string_view json);
    std::string write() const;
};

} // namespace Vs::Native
