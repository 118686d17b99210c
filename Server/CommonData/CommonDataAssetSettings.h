#pragma once

#include "Server/DataModel/AssetSettings.h"
#include "Server/Geometry/GkVector3d.h"

#include <memory>
#include <set>
#include <string>

namespace Vs::NameView {
class NamedViews;
}

namespace Vs::CommonData {

/// The settings that every kind of asset has: `cast<CommonDataAssetSettings>(adapter->assetSettings())`. They
/// are kept in the asset's own values, so they are saved with it and read on demand. A value from a file that
/// makes no sense counts as not set, and is reported once by a warning. Main thread.
class CommonDataAssetSettings : public Implements<CommonDataAssetSettings, AssetSettings>
{
public:
    explicit CommonDataAssetSettings(Asset* asset);
    ~CommonDataAssetSettings() override;

    /// The model's up direction, of unit length; Z until it is set.
    [[nodiscard]] GkVector3d sceneUp() const;
    /// Where the model's front faces, of unit length and perpendicular to `sceneUp`; -Y until it is set.
    [[nodiscard]] GkVector3d sceneFront() const;
    /// Sets both. Only the part of `front` perpendicular to `up` counts. Returns false and changes nothing if
    /// one of them isn't a direction, or they are parallel.
    [[nodiscard]] bool sceneOrientation(const GkVector3d& up, const GkVector3d& front);

    /// Where Home views the model from.
    struct HomeView
    {
        GkVector3d eye; ///< From the model to the viewer, of unit length.
        GkVector3d up;  ///< In the picture, of unit length and perpendicular to `eye`.
    };
    /// From the right, front and above until it is set.
    [[nodiscard]] HomeView homeView() const;
    /// Only the part of `up` perpendicular to `eye` counts. Returns false and changes nothing if one of them
    /// isn't a direction, or they are parallel.
    [[nodiscard]] bool homeView(const HomeView& view);

    /// Whether a perspective becomes parallel while it looks straight at a side of the model. Default false.
    bool perspWithOrthoFaces() const;
    void perspWithOrthoFaces(bool on);

    /// Never null.
    NameView::NamedViews* namedViews() { return m_namedViews.get(); }

private:
    struct Orientation
    {
        GkVector3d up, front;
    };
    const Orientation& orientation() const;

    mutable std::wstring m_upText, m_frontText; ///< What `m_orientation` was read from.
    mutable Orientation m_orientation{{0, 0, 1}, {0, -1, 0}};
    mutable std::set<std::wstring> m_unreadable; ///< The values that were warned about.
    std::unique_ptr<NameView::NamedViews> m_namedViews;
};

} // namespace Vs::CommonData
