#pragma once

#include "Server/DataModel/Native/Manifest.h"
#include "Server/DataModel/Native/PackageWriter.h"

#include <functional>
#include <string>
#include <vector>

namespace Vs {
class Asset;
class Document;
class ModelData;
struct DocumentFile;
} // namespace Vs

namespace Vs::Native {

/// The entry that marks a package as a recovery file: what was being worked on, and when. A save omits it.
constexpr const char* kRecordName = "recovery.json";

/// What a document holds now, as the entries of a package. It changes neither the document nor its file. Main
/// thread, or the only thread of a forked child.
class DocumentContent
{
public:
    /// Both must outlive this.
    DocumentContent(const Document& document, const DocumentFile& file);

    /// Input that isn't part of the document.
    struct Frame
    {
        bool moved = false;  ///< The package won't be the document's file.
        std::string picture; ///< PNG; empty leaves the package without one.
        std::string record;  ///< For a recovery file (kRecordName); empty for others.
    };
    /// Called with the progress and what is being written; may throw to give up.
    using Watch = std::function<void(double fraction, const std::wstring& step)>;

    /// Writes all entries but not the end of the package. Call once. Throws std::runtime_error, and whatever
    /// the watch throws.
    void write(PackageWriter& writer, const Frame& frame, const Watch& watch);

    /// The picture in the document's file; empty if it has none that can be read.
    [[nodiscard]] std::string oldPicture() const;

    /// Visible ones first.
    const std::vector<Asset*>& assets() const { return m_assets; }
    /// The rest is known when everything has been written.
    const Manifest& manifest() const { return m_manifest; }
    /// By asset; of size 0 for one with nothing in it.
    const std::vector<PackageWriter::Entry>& parts() const { return m_parts; }
    /// Whether an asset's exact data were made by this program's kernel or a worker, and aren't in a native
    /// file yet.
    bool isOwnWork(size_t asset) const { return m_own[asset]; }

private:
    void writeAssets(PackageWriter& writer, const Watch& watch);
    void writeExtras(PackageWriter& writer, bool moved);
    bool isKept(const Manifest::Extra& extra, bool moved) const;
    bool isOwnWork(const ModelData& data) const;

    const Document& m_document;
    const DocumentFile& m_file;
    std::vector<Asset*> m_assets;
    Manifest m_manifest;
    std::vector<PackageWriter::Entry> m_parts;
    std::vector<bool> m_own;
};

} // namespace Vs::Native
