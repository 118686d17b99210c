#include "Server/Scene/Rendra/Rehearsal.h"

#include "Server/Scene/NodeChange.h"

#include <memory>
#include <utility>

namespace Rendra {

namespace {

/// Two squares that meet in an edge; the normals of one change from its front to its back.
std::shared_ptr<const Vs::BodyMesh> bentMesh()
{
    Vs::BodyMesh mesh;
    mesh.positions = {0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10, 0, 0, 0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10};
    mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 1, 0, 0, -1, 0, 0, -1, 0, 0, 1, 0, 0};
    mesh.triangles = {0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7};
    mesh.faces = {{0, 2, -1}, {2, 2, -1}};
    mesh.edgePoints = {0, 0, 0, 0, 10, 0};
    mesh.edgeStarts = {0, 2};
    mesh.bounds.add({0, 0, 0});
    mesh.bounds.add({10, 10, 10});
    return std::make_shared<const Vs::BodyMesh>(std::move(mesh));
}

} // namespace

Vs::StrongRef<Vs::Scene::ViewFragment> makeRehearsal()
{
    Vs::StrongRef<Vs::Scene::ViewFragment> fragment = Vs::Scene::ViewFragment::make(nullptr);
    Vs::Scene::NodeChange(fragment->viewFragmentNode()).add(Graphics::BodyNode::make(bentMesh(), {}));
    fragment->camera()->fit(fragment->bounds());
    fragment->renderParams()->groundPlaneEnabled(false);
    return fragment;
}

} // namespace Rendra
