#pragma once

#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentType.h"

namespace Vu::Design {

/// The identifier of the asset type "Design".
inline constexpr const char* kDesignAssetType = "VeloraAssetType";

/// One row per kind of native document: its document type, and the asset type of the asset in a new document.
struct DocumentKindRow
{
    const char* documentType; ///< Identifier, and key of the name.
    const char* documentName; ///< The English default.
    const wchar_t* extension; ///< With its dot.
    const char* assetType;    ///< Identifier, and key of the name.
    const char* assetName;    ///< The English default.
    Vs::ImageSetResource* (*icon)();
    Vs::AssetTypeTraits traits = {};
};

/// A kind of native document. Registered with the data model as long as it lives.
class DocumentKind
{
public:
    explicit DocumentKind(const DocumentKindRow& row);
    ~DocumentKind();
    DocumentKind(const DocumentKind&) = delete;
    DocumentKind& operator=(const DocumentKind&) = delete;

private:
    class PicturedAssetType : public Vs::Implements<PicturedAssetType, Vs::AssetType>
    {
    public:
        explicit PicturedAssetType(const DocumentKindRow& row);
        Vs::ImageSetResource* icon() const override { return m_icon ? m_icon() : nullptr; }

    private:
        Vs::ImageSetResource* (*m_icon)();
    };

    Vs::DocumentType m_documentType;
    PicturedAssetType m_assetType;
};

/// All kinds that this add-in provides, in the order in which they are offered to the user. Their models are
/// alike: a tree of components with bodies.
class DocumentKinds
{
public:
    DocumentKinds();

private:
    DocumentKind m_design, m_simulation, m_documentation, m_torvex;
};

} // namespace Vu::Design
