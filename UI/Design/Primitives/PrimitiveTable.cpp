#include "UI/Design/Primitives/PrimitiveTable.h"

#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

namespace Vu::Design {
namespace {

using Look = Vs::ModelBuilder::Look;

// clang-format off
constexpr PrimitiveRow::Size kBoxSizes[] = {
    {"Dx", 100, [] { return localized("PrimitiveLength", "Length"); }, 0},
    {"Dy", 100, [] { return localized("PrimitiveWidth", "Width"); },  1},
    {"Dz", 100, [] { return localized("PrimitiveHeight", "Height"); }, 2}};

constexpr PrimitiveRow::Size kCylinderSizes[] = {
    {"Radius", 50,  [] { return localized("EditRadius", "Radius"); }, 0},
    {"Height", 100, [] { return localized("PrimitiveHeight", "Height"); }, 2}};

constexpr PrimitiveRow::Size kSphereSizes[] = {
    {"Radius", 50, [] { return localized("EditRadius", "Radius"); }, 0}};

constexpr PrimitiveRow::Size kConeSizes[] = {
    {"Radius",    50,  [] { return localized("EditRadius", "Radius"); },        0, true},
    {"TopRadius", 0,   [] { return localized("PrimitiveTopRadius", "Radius at top"); }, 0, true},
    {"Height",    100, [] { return localized("PrimitiveHeight", "Height"); },        2}};

constexpr PrimitiveRow::Size kTorusSizes[] = {
    {"Radius",     50, [] { return localized("EditRadius", "Radius"); },      0},
    {"TubeRadius", 15, [] { return localized("PrimitiveTubeRadius", "Tube radius"); }, 2}};
// clang-format on

GkVector3d ownOrigin(const double*)
{
    return {};
}

std::wstring allIsWell(const double*)
{
    return {};
}

} // namespace

constinit const PrimitiveRow kBox = {
    .look = {.key = L"BoxCommand",
             .title = "Box",
             .icon = &Resources::Box,
             .tooltip = "Add a box to the design",
             .arguments = {L"Dx", L"Dy", L"Dz", L"Origin", L"Direction"}},
    .sizes = kBoxSizes,
    .build = [](Vs::ModelBuilder& builder, const double* size, const Look& look,
                Vs::Status& status) { return builder.box(size[0], size[1], size[2], look, status); },
    .foot = [](const double* size) { return GkVector3d(size[0] / 2, size[1] / 2, 0); },
    .grip =
        [](const double* size, size_t which) {
            GkVector3d middle(size[0] / 2, size[1] / 2, size[2] / 2);
            double* const along[] = {&middle.x, &middle.y, &middle.z};
            *along[which] = size[which];
            return middle;
        },
    .whyInvalid = &allIsWell};

constinit const PrimitiveRow kCylinder = {
    .look = {.key = L"CylinderCommand",
             .title = "Cylinder",
             .icon = &Resources::Cylinder,
             .tooltip = "Add a cylinder to the design",
             .arguments = {L"Radius", L"Height", L"Origin", L"Direction"}},
    .sizes = kCylinderSizes,
    .build = [](Vs::ModelBuilder& builder, const double* size, const Look& look,
                Vs::Status& status) { return builder.cylinder(size[0], size[1], look, status); },
    .foot = &ownOrigin,
    .grip =
        [](const double* size, size_t which) {
            return which == 0 ? GkVector3d(size[0], 0, size[1] / 2) : GkVector3d(0, 0, size[1]);
        },
    .whyInvalid = &allIsWell};

constinit const PrimitiveRow kSphere = {
    .look = {.key = L"SphereCommand",
             .title = "Sphere",
             .icon = &Resources::Sphere,
             .tooltip = "Add a sphere to the design",
             .arguments = {L"Radius", L"Origin", L"Direction"}},
    .sizes = kSphereSizes,
    .build = [](Vs::ModelBuilder& builder, const double* size, const Look& look,
                Vs::Status& status) { return builder.sphere(size[0], look, status); },
    .foot = [](const double* size) { return GkVector3d(0, 0, -size[0]); },
    .grip = [](const double* size, size_t) { return GkVector3d(size[0], 0, 0); },
    .whyInvalid = &allIsWell};

constinit const PrimitiveRow kCone = {
    .look = {.key = L"ConeCommand",
             .title = "Cone",
             .icon = &Resources::Cone,
             .tooltip = "Add a cone, pointed or cut off, to the design",
             .arguments = {L"Radius", L"TopRadius", L"Height", L"Origin", L"Direction"}},
    .sizes = kConeSizes,
    .build = [](Vs::ModelBuilder& builder, const double* size, const Look& look,
                Vs::Status& status) { return builder.cone(size[0], size[1], size[2], look, status); },
    .foot = &ownOrigin,
    .grip =
        [](const double* size, size_t which) {
            return which == 2 ? GkVector3d(0, 0, size[2])
                              : GkVector3d(size[which], 0, which == 0 ? 0 : size[2]);
        },
    .whyInvalid =
        [](const double* size) {
            return size[0] > 0 || size[1] > 0
                       ? std::wstring()
                       : localized("ConeNoRadius", "A cone has a radius at its base, at its top, or both.");
        }};

constinit const PrimitiveRow kTorus = {
    .look = {.key = L"TorusCommand",
             .title = "Torus",
             .icon = &Resources::Torus,
             .tooltip = "Add a ring to the design",
             .arguments = {L"Radius", L"TubeRadius", L"Origin", L"Direction"}},
    .sizes = kTorusSizes,
    .build = [](Vs::ModelBuilder& builder, const double* size, const Look& look,
                Vs::Status& status) { return builder.torus(size[0], size[1], look, status); },
    .foot = [](const double* size) { return GkVector3d(0, 0, -size[1]); },
    .grip = [](const double* size, size_t which) { return GkVector3d(size[0], 0, which == 0 ? 0 : size[1]); },
    .whyInvalid =
        [](const double* size) {
            return size[1] < size[0]
                       ? std::wstring()
                       : localized("TorusTubeTooThick",
                                   "The radius of the tube must be less than that of the ring.");
        }};

} // namespace Vu::Design
