#pragma once

#include "Server/Base/Require.h"
#include "Server/Base/Status.h"
#include "Server/Base/StrongRef.h"
#include "Server/Scene/Camera.h"

#include <string>
#include <vector>

namespace Vs {
class Asset;
}

namespace Vs::CommonData {
class CommonDataAssetSettings;
}

namespace Vs::NameView {

/// A camera of an asset that was kept under a name. Never changed once it is made: a changed view is another
/// object of the same name.
class NamedView : public Implements<NamedView, SharedObject>
{
public:
    NamedView(std::wstring name, bool fixed, StrongRef<Scene::Camera> camera)
        : m_name(std::move(name)), m_fixed(fixed), m_camera(std::move(camera))
    {
        require(m_camera.get() != nullptr, "a named view has a camera");
    }

    const std::wstring& name() const { return m_name; }
    Scene::Camera* camera() const { return m_camera.get(); }
    /// A standard view, which every asset has. Only its direction and its up mean anything: who shows it
    /// frames the model anew.
    bool isFixed() const { return m_fixed; }
    /// Whether it can be renamed, updated and deleted.
    bool enableModify() const { return !m_fixed; }

private:
    std::wstring m_name;
    bool m_fixed;
    StrongRef<Scene::Camera> m_camera;
};

/// The named views of one asset: the standard views Home, Top, Front and Right, as the asset's sceneUp and
/// sceneFront place them, and behind them the user's own, in the order in which they were made. The user's
/// views are an asset setting: changes are undone with the asset's, and
/// `AssetEventSite::assetSettingsChanged` tells of them. A view of a file that makes no sense is left out,
/// with a warning. Main thread.
class NamedViews : public Implements<NamedViews>
{
public:
    using Views = std::vector<StrongRef<NamedView>>;

    explicit NamedViews(CommonData::CommonDataAssetSettings& settings) : m_settings(settings) {}

    Asset* asset() const;
    const Views& views() const;
    /// By its exact name. Standard views are found by their English names as well, whatever the language, so
    /// that scripts are understood everywhere. Null if there is none.
    [[nodiscard]] StrongRef<NamedView> find(const std::wstring& name) const;
    /// `base`, or the first of `base`1, `base`2, ... that no view has yet.
    [[nodiscard]] std::wstring generateNamedViewName(const std::wstring& base) const;

    /// Keeps the camera's state under the name of a view that there is, as one undo step. False, with the
    /// reason, if there is none, it is fixed, or the asset can't be changed.
    bool updateNamedViewCamera(const std::wstring& name, const Scene::Camera* camera, Status& status);

    /// What the requests are made of; each returns the reason in the status and changes nothing if it can't
    /// be. A new name is used without the blanks at its ends; it must hold something, and differ from all
    /// others.
    bool add(const std::wstring& name, const Scene::Camera& camera, Status& status);
    bool remove(const std::wstring& name, Status& status);
    bool rename(const std::wstring& name, const std::wstring& newName, Status& status);
    bool update(const std::wstring& name, const Scene::Camera& camera, Status& status);

private:
    bool isFree(const std::wstring& name, Status& status) const;
    /// The place of a view of the user's own, or the end with the reason.
    Views::iterator modifiable(Views& own, const std::wstring& name, Status& status) const;
    Views own() const;
    void keep(const Views& own);

    CommonData::CommonDataAssetSettings& m_settings;
    mutable Views m_views;
    mutable std::string m_readFrom; ///< What `m_views` was made of.
};

} // namespace Vs::NameView
