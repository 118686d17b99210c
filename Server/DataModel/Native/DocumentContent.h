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

/// The entry by which a package is known as a recovery file: what was being worked on, and when. A save
/// leaves it out.
constexpr const char* kRecordName = "recovery.json";

/// What a document holds now, as the entries of a package. It changes neither the document nor its file.
/// Main thread, or the only one of a forked child.
class DocumentContent
{
public:
    /// Both must outlive this.
    DocumentContent(const Document& document, const DocumentFile& file);

    /// What isn't the document's own.
    struct Frame
    {
        bool moved = false;  ///< The package isn't going to be the file that the document has.
        std::string picture; ///< PNG; empty leaves the package without one.
        std::string record;  ///< Of a recovery file (kRecordName); empty for others.
    };
    /// Told how far it is, and with what; may throw, to give up.
    using Watch = std::function<void(double fraction, const std::wstring& step)>;

    /// Writes all entries but not the end of the package. Once. Throws std::runtime_error, and what the watch
    /// throws.
    void write(PackageWriter& writer, const Frame& frame, const Watch& watch);

    /// The picture that the document's file has; empty if it has none that can be read.
    [[nodiscard]] std::string oldPicture() const;

    /// Visible ones first.
    const std::vector<Asset*>& assets() const { return m_assets; }
    /// The rest is known when everything is written.
    const Manifest& manifest() const { return m_manifest; }
    /// By asset; of size 0 for one with nothing in it.
    const std::vector<PackageWriter::Entry>& parts() const { return m_parts; }
    /// Whether an asset's exact data are this program's kernel's work or a worker's, and no native file has
    /// them yet.
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
