#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Status.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

class Asset;
class Document;

/// What a translator is told about one job.
class TranslatorOptions : public Implements<TranslatorOptions>
{
public:
    const std::wstring& fileName() const { return m_fileName; }
    void fileName(const std::wstring& path) { m_fileName = path; }

private:
    std::wstring m_fileName;
};

class TranslatorOpenOptions : public Implements<TranslatorOpenOptions, TranslatorOptions>
{
public:
    /// A damaged file is refused, where otherwise what is sound of it is read, with a warning.
    bool isStrict() const { return m_isStrict; }
    void isStrict(bool value) { m_isStrict = value; }

private:
    bool m_isStrict = false;
};

/// How finely curved faces become triangles.
struct TranslatorRefinement
{
    float normalDeviation = 20.0f; ///< Largest angle between neighbouring facets, in degrees.
    float surfaceDeviation =
        0.001f; ///< Largest distance from the true surface, as a fraction of the part's diagonal.
    // These two ask for nothing at the values here or above; below, triangles are split to keep them.
    float maximumAspectRatio = 21.5f;     ///< Of a triangle's longest side to its height above that; from 3.
    float maximumEdgeLength = 56.401283f; ///< Longest side in per cent of the part's diagonal.

    friend bool operator==(const TranslatorRefinement&, const TranslatorRefinement&) = default;
};

/// The axis that points upwards in a file; the model's own is z.
enum class UpAxis {
    Usual, ///< As is customary in files of the format.
    Y,
    Z
};

/// What of the save options a format has any choice about.
struct TranslatorChoices
{
    bool refinement = false;
    bool unit = false;
    bool text = false;
    bool upAxis = false;
};

class TranslatorSaveOptions : public Implements<TranslatorSaveOptions, TranslatorOptions>
{
public:
    /// Write lengths in the unit in which they are shown, in place of millimetres.
    bool& exportInDisplayUnit() { return m_exportInDisplayUnit; }
    /// Write all bodies as one. A mesh file of one solid holds them one behind the other in any case.
    bool& combineSolids() { return m_combineSolids; }
    TranslatorRefinement& refinement() { return m_refinement; }
    const TranslatorRefinement& refinement() const { return m_refinement; }
    void resetRefinement() { m_refinement = {}; }

    /// The key of the unit of length (LengthUnit::key), which goes before `exportInDisplayUnit`; empty for
    /// none.
    std::string& unit() { return m_unit; }
    /// Leave out what is hidden. Default false.
    bool& visibleOnly() { return m_visibleOnly; }
    /// Component::id of those to be written, with all that is in them; empty for all.
    std::vector<std::string>& components() { return m_components; }
    /// As text instead of binary, where the format has both.
    bool& asText() { return m_asText; }
    UpAxis& upAxis() { return m_upAxis; }

private:
    bool m_exportInDisplayUnit = true;
    bool m_combineSolids = false;
    bool m_visibleOnly = false;
    bool m_asText = false;
    UpAxis m_upAxis = UpAxis::Usual;
    std::string m_unit;
    std::vector<std::string> m_components;
    TranslatorRefinement m_refinement;
};

/// On whose behalf a translator works, and what comes of it.
class TranslatorContext
{
public:
    const std::string& identifier() const { return m_identifier; }
    void identifier(const std::string& id) { m_identifier = id; }
    /// True: the file becomes a document of its own. False: its parts are inserted into `asset()`.
    [[nodiscard]] bool open() const { return m_open; }
    void open(bool open) { m_open = open; }
    /// The asset to save or to insert into; the active one (DocumentMgr::activeAsset) if null.
    Asset* asset() const { return m_asset; }
    void asset(Asset* asset) { m_asset = asset; }
    /// The document that an opening made; null before, and after a failure.
    Document* document() const { return m_document; }
    void document(Document* document) { m_document = document; }

private:
    std::string m_identifier;
    bool m_open = true;
    Asset* m_asset = nullptr;
    Document* m_document = nullptr;
};

/// Reads and writes one family of foreign files.
class Translator : public Implements<Translator>
{
public:
    virtual const std::string& identifier() const = 0;
    /// As the file dialog shows it, such as L"STEP Files".
    virtual const std::wstring& name() const = 0;
    /// With their dots, in lower case, the preferred one first.
    virtual const std::vector<std::wstring>& extensions() const = 0;
    [[nodiscard]] virtual bool canOpen() const = 0;
    /// Whether assets of that type can be written; an empty identifier asks for any.
    [[nodiscard]] virtual bool canSave(const std::string& assetTypeId) const = 0;
    /// The default has none.
    [[nodiscard]] virtual TranslatorChoices saveChoices() const { return {}; }

    [[nodiscard]] virtual std::unique_ptr<TranslatorOpenOptions> createOpenOptions() const;
    [[nodiscard]] virtual std::unique_ptr<TranslatorSaveOptions> createSaveOptions() const;

    /// Reads the file. Shows progress and can be cancelled through Progress. Returns false with one error
    /// that names the file and the cause, or without any error if it was cancelled; nothing has changed then.
    /// What could be read only in part comes with warnings.
    virtual bool open(TranslatorOpenOptions& options, TranslatorContext& context, Status& status) = 0;
    /// Writes the asset to a new file and puts that in place of an old one only when it is complete.
    virtual bool save(TranslatorSaveOptions& options, TranslatorContext& context, Status& status) = 0;
    /// How many triangles `save` would write; 0 where the format has none, or nothing would be written.
    /// Meshes what is asked for otherwise than it is shown, which takes time; `goOn` is asked before each
    /// body, and a no gives 0.
    [[nodiscard]] virtual uint64_t countTriangles(TranslatorSaveOptions& options, TranslatorContext& context,
                                                  const std::function<bool()>& goOn) const;
};

} // namespace Vs
