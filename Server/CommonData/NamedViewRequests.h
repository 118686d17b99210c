#pragma once

#include "Server/Base/StrongRef.h"
#include "Server/DataModel/Request.h"
#include "Server/Scene/Camera.h"

namespace Vs::NameView {

class NamedViews;

/// A change of an asset's named views, as one undo step. Made by `make` for one asset and must not be
/// executed on another; ended by Request::destroy.
class NamedViewRequest : public Implements<NamedViewRequest, Request>
{
protected:
    NamedViewRequest(const Asset* asset, const std::wstring& title) : Implements(title), m_asset(asset) {}
    void onExecute(Asset& asset, Status& status) override;
    virtual void change(NamedViews& views, Status& status) = 0;

private:
    const Asset* m_asset; ///< Only for comparison.
};

/// Keeps a copy of the camera under a generated name.
class NewNamedViewRequest : public Implements<NewNamedViewRequest, NamedViewRequest>
{
public:
    [[nodiscard]] static NewNamedViewRequest* make(Asset* asset, StrongRef<Scene::Camera> camera);

protected:
    NewNamedViewRequest(const Asset* asset, StrongRef<Scene::Camera> camera);
    void change(NamedViews& views, Status& status) override;

private:
    StrongRef<Scene::Camera> m_camera;
};

class DeleteNamedViewRequest : public Implements<DeleteNamedViewRequest, NamedViewRequest>
{
public:
    [[nodiscard]] static DeleteNamedViewRequest* make(Asset* asset, const std::wstring& name);

protected:
    DeleteNamedViewRequest(const Asset* asset, const std::wstring& name);
    void change(NamedViews& views, Status& status) override;

private:
    std::wstring m_name;
};

class UpdateNamedViewNameRequest : public Implements<UpdateNamedViewNameRequest, NamedViewRequest>
{
public:
    [[nodiscard]] static UpdateNamedViewNameRequest* make(Asset* asset, const std::wstring& name,
                                                          const std::wstring& newName);

protected:
    UpdateNamedViewNameRequest(const Asset* asset, const std::wstring& name, const std::wstring& newName);
    void change(NamedViews& views, Status& status) override;

private:
    std::wstring m_name, m_newName;
};

/// Stores another camera under an existing name.
class UpdateNamedViewCameraRequest : public Implements<UpdateNamedViewCameraRequest, NamedViewRequest>
{
public:
    [[nodiscard]] static UpdateNamedViewCameraRequest* make(Asset* asset, const std::wstring& name,
                                                            StrongRef<Scene::Camera> camera);

protected:
    UpdateNamedViewCameraRequest(const Asset* asset, const std::wstring& name,
                                 StrongRef<Scene::Camera> camera);
    void change(NamedViews& views, Status& status) override;

private:
    std::wstring m_name;
    StrongRef<Scene::Camera> m_camera;
};

} // namespace Vs::NameView
