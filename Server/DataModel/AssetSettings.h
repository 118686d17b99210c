#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Require.h"

namespace Vs {

class Asset;

/// What is set for an asset as a whole and saved with it, as values with a meaning. Belongs to the asset's
/// adapter, which gives it by AssetAdapter::assetSettings.
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
