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

/// A camera of an asset that was stored under a name. Immutable: a changed view is another object of the same
/// name.
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
    /// A standard view, which every asset has. Only its direction and its up are meaningful: code that shows
    /// it frames the model again.
    bool isFixed() const { return m_fixed; }
    /// Whether it can be renamed, updated and deleted.
    bool enableModify() const { return !m_fixed; }

private:
    std::wstring m_name;
    bool m_fixed;
    StrongRef<Scene::Camera> m_camera;
};

/// The named views of one asset: the standard views Home, Top, Front and Right, oriented by the asset's
/// sceneUp and sceneFront, followed by the user's own, in order of creation. The user's views are an asset
/// setting: changes are undone with the asset's, and `AssetEventSite::assetSettingsChanged` reports them. A
/// view from a file that makes no sense is left out, with a warning. Main thread.
class NamedViews : public Implements<NamedViews>
{
public:
    using Views = std::vector<StrongRef<NamedView>>;

    explicit NamedViews(CommonData::CommonDataAssetSettings& settings) : m_settings(settings) {}

    Asset* asset() const;
    const Views& views() const;
    /// By its exact name. Standard views are also found by their English names, whatever the language, so
    /// that scripts work everywhere. Null if there is none.
    [[nodiscard]] StrongRef<NamedView> find(const std::wstring& name) const;
    /// `base`, or the first of `base`1, `base`2, ... that no view has yet.
    [[nodiscard]] std::wstring generateNamedViewName(const std::wstring& base) const;

    /// Stores the camera's state under the name of an existing view, as one undo step. False, with the
    /// reason, if there is none, it is fixed, or the asset can't be changed.
    bool updateNamedViewCamera(const std::wstring& name, const Scene::Camera* camera, Status& status);

    /// What the requests use; each returns the reason in the status and changes nothing if it is impossible.
    /// A new name is trimmed; it must not be empty, and must differ from all others.
    bool add(const std::wstring& name, const Scene::Camera& camera, Status& status);
    bool remove(const std::wstring& name, Status& status);
    bool rename(const std::wstring& name, const std::wstring& newName, Status& status);
    bool update(const std::wstring& name, const Scene::Camera& camera, Status& status);

private:
    bool isFree(const std::wstring& name, Status& status) const;
    /// The position of one of the user's views, or the end with the reason.
    Views::iterator modifiable(Views& own, const std::wstring& name, Status& status) const;
    Views own() const;
    void keep(const Views& own);

    CommonData::CommonDataAssetSettings& m_settings;
    mutable Views m_views;
    mutable std::string m_readFrom; ///< What `m_views` was made from.
};

} // namespace Vs::NameView
