#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Require.h"

#include <functional>
#include <memory>

namespace Vs {

class Asset;
class AssetSettings;

/// What other libraries attach to an asset: its nodes in the scene, for example. Lives as long as the asset
/// and is asked for an interface by cast<Scene::SceneAssetAdapter>(asset->adapter()).
class AssetAdapter : public Implements<AssetAdapter>
{
public:
    explicit AssetAdapter(Asset* asset) : m_asset(asset)
    {
        require(asset != nullptr, "an adapter is hung on an asset");
    }
    Asset* asset() const { return m_asset; }

    /// The asset's settings as typed values; null if this adapter has none.
    virtual AssetSettings* assetSettings() { return nullptr; }

    using Factory = std::function<std::unique_ptr<AssetAdapter>(Asset*)>;
    /// Installs a factory for the adapter of an asset, called at the first call of Asset::adapter(). The last
    /// one installed that returns an adapter wins; null means that it has none for this asset. Returns a
    /// number for `removeFactory`.
    [[nodiscard]] static int addFactory(Factory factory);
    static void removeFactory(int number);

private:
    friend class Asset;
    static std::unique_ptr<AssetAdapter> make(Asset* asset);

    Asset* m_asset;
};

} // namespace Vs
