#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Require.h"

namespace Vs {

class Asset;

/// Settings of an asset as a whole, saved with it, as typed values. Owned by the asset's adapter, which
/// returns it from AssetAdapter::assetSettings.
class AssetSettings : public Implements<AssetSettings>
{
public:
    explicit AssetSettings(Asset* asset) : m_asset(asset)
    {
        require(asset != nullptr, "settings belong to an asset");
    }
    Asset* asset() const { return m_asset; }

private:
    Asset* m_asset;
};

} // namespace Vs
