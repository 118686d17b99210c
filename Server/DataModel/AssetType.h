#pragma once

#include "Server/Base/SerializableObject.h"

#include <string>
#include <vector>

namespace Vs {

class ImageSetResource;

/// How an asset type may be used.
struct AssetTypeTraits
{
    bool builtIn = false; ///< Belongs to the host; never offered for creation.
    bool hidden = false;  ///< Not offered for creation by itself.
};

/// A kind of asset, such as a design. As an argument of a command its text is its identifier.
class AssetType : public Implements<AssetType, SerializableObject>
{
public:
    /// `defaultDocType` is the identifier of the document type that a new document of this asset type gets.
    AssetType(std::string identifier, std::wstring name, std::string defaultDocType,
              AssetTypeTraits traits = {})
        : m_identifier(std::move(identifier)),
          m_name(std::move(name)),
          m_defaultDocType(std::move(defaultDocType)),
          m_traits(traits)
    {
    }

    const std::string& identifier() const { return m_identifier; }
    const std::wstring& name() const { return m_name; }
    const std::string& defaultDocType() const { return m_defaultDocType; }
    bool isBuiltIn() const { return m_traits.builtIn; }
    bool isHidden() const { return m_traits.hidden; }
    /// The picture of the type, or null.
    virtual ImageSetResource* icon() const { return nullptr; }

    std::wstring serialize() const override;
    std::string factoryName() const override;

private:
    std::string m_identifier;
    std::wstring m_name;
    std::string m_defaultDocType;
    AssetTypeTraits m_traits;
};

/// The asset types that can be created and opened, in the order of their registration.
class AssetTypeMgr
{
public:
    static AssetTypeMgr* get();

    unsigned assetTypes() const { return static_cast<unsigned>(m_types.size()); }
    AssetType* assetType(unsigned index) const;
    /// Null if nobody has registered that identifier.
    AssetType* assetType(const std::string& identifier) const;

    /// The type isn't owned and must be unregistered before it is destroyed. A second type with the same
    /// identifier is refused: returns false. Notifies the asset event sites.
    bool registerType(AssetType* type);
    void unregisterType(AssetType* type);

private:
    std::vector<AssetType*> m_types;
};

/// The factory called "AssetTypeSerializableObjectFactory": finds registered asset types by their identifier.
class AssetTypeSerializableObjectFactory : public SerializableObjectFactory
{
public:
    static constexpr const char* kName = "AssetTypeSerializableObjectFactory";
    AssetTypeSerializableObjectFactory() : SerializableObjectFactory(kName) {}
    SerializableObject* deserialize(const std::wstring& text, bool create) override;
};

} // namespace Vs
