#include "Server/CommonData/NamedViewRequests.h"

#include "Server/Base/Require.h"
#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/CommonData/NamedViews.h"
#include "Server/CommonData/Private/Texts.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"

#include <utility>

namespace Vs::NameView {

using CommonData::localized;

namespace {

/// The base name of the user's views, in every language: scripts rely on it.
constexpr const wchar_t* kBaseName = L"NamedView";

} // namespace

void NamedViewRequest::onExecute(Asset& asset, Status& status)
{
    AssetAdapter* adapter = asset.adapter();
    auto* settings = cast<CommonData::CommonDataAssetSettings>(adapter ? adapter->assetSettings() : nullptr);
    if (!settings || &asset != m_asset)
        status.addError(name() + L": the model has no such named views.");
    else
        change(*settings->namedViews(), status);
}

NewNamedViewRequest::NewNamedViewRequest(const Asset* asset, StrongRef<Scene::Camera> camera)
    : Implements(asset, localized("NewNamedView", "New Named View")), m_camera(std::move(camera))
{
    require(m_camera.get() != nullptr, "a named view has a camera");
}

NewNamedViewRequest* NewNamedViewRequest::make(Asset* asset, StrongRef<Scene::Camera> camera)
{
    return new NewNamedViewRequest(asset, std::move(camera));
}

void NewNamedViewRequest::change(NamedViews& views, Status& status)
{
    views.add(views.generateNamedViewName(kBaseName), *m_camera, status);
}

DeleteNamedViewRequest::DeleteNamedViewRequest(const Asset* asset, const std::wstring& name)
    : Implements(asset, localized("DeleteNamedView", "Delete Named View")), m_name(name)
{
}

DeleteNamedViewRequest* DeleteNamedViewRequest::make(Asset* asset, const std::wstring& name)
{
    return new DeleteNamedViewRequest(asset, name);
}

void DeleteNamedViewRequest::change(NamedViews& views, Status& status)
{
    views.remove(m_name, status);
}

UpdateNamedViewNameRequest::UpdateNamedViewNameRequest(const Asset* asset, const std::wstring& name,
                                                       const std::wstring& newName)
    : Implements(asset, localized("RenameNamedView", "Rename Named View")), m_name(name), m_newName(newName)
{
}

UpdateNamedViewNameRequest* UpdateNamedViewNameRequest::make(Asset* asset, const std::wstring& name,
                                                             const std::wstring& newName)
{
    return new UpdateNamedViewNameRequest(asset, name, newName);
}

void UpdateNamedViewNameRequest::change(NamedViews& views, Status& status)
{
    views.rename(m_name, m_newName, status);
}

UpdateNamedViewCameraRequest::UpdateNamedViewCameraRequest(const Asset* asset, const std::wstring& name,
                                                           StrongRef<Scene::Camera> camera)
    : Implements(asset, localized("UpdateNamedView", "Update Named View")),
      m_name(name),
      m_camera(std::move(camera))
{
    require(m_camera.get() != nullptr, "a named view has a camera");
}

UpdateNamedViewCameraRequest* UpdateNamedViewCameraRequest::make(Asset* asset, const std::wstring& name,
                                                                 StrongRef<Scene::Camera> camera)
{
    return new UpdateNamedViewCameraRequest(asset, name, std::move(camera));
}

void UpdateNamedViewCameraRequest::change(NamedViews& views, Status& status)
{
    views.update(m_name, *m_camera, status);
}

} // namespace Vs::NameView
