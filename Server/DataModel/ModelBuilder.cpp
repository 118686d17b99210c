#include "Server/DataModel/ModelBuilder.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/Private/Motion.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Transaction.h"

#include <cmath>
#include <exception>
#include <span>

namespace Vs {

namespace {

struct Size
{
    const wchar_t* name;
    double value;
    bool mayBeZero = false;
};

struct Kind
{
    ModelKernel::Primitive primitive;
    const wchar_t* name;
};

bool checkSize(const Kind& kind, const Size& size, Status& status)
{
    const bool isNothing = size.value == 0 && size.mayBeZero;
    if (isNothing || (std::isfinite(size.value) && size.value >= ModelBuilder::kSmallestSize &&
                      size.value <= ModelBuilder::kLargestSize))
        return true;
    status.addError(std::wstring(kind.name) + L": the " + size.name +
                    L" must be a number of millimetres from 0.0001 to 10000000.");
    return false;
}

bool checkPlacement(const Kind& kind, const GkMatrix3d& placement, Status& status)
{
    const wchar_t* const wrong =
        !isMotion(placement) ? L"the placement must be a motion, without scale or mirror."
        : !isNear(placement) ? L"the place is not within a thousand kilometres of the origin."
                             : nullptr;
    if (wrong)
        status.addError(std::wstring(kind.name) + L": " + wrong);
    return !wrong;
}

const Component* add(Asset* asset, const Kind& kind, std::span<const Size> sizes,
                     const ModelBuilder::Look& look, Status& status)
{
    double values[3] = {};
    for (size_t i = 0; i < sizes.size(); ++i) {
        if (!checkSize(kind, sizes[i], status))
            return nullptr;
        values[i] = sizes[i].value;
    }
    if (!checkPlacement(kind, look.placement, status))
        return nullptr;
    const std::wstring name =
        // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): a name that is free, not memory.
        look.name.empty() ? asset->data().names(*asset->components()).free(kind.name) : look.name;
    try {
        Transaction transaction(asset, kind.name);
        const std::string id = asset->data().history().changeModel([&](ModelKernel& kernel) {
            return kernel.addPrimitive(kind.primitive, values, look.placement, name, look.colour);
        });
        transaction.commit();
        return asset->findComponent(id);
    } catch (const std::exception& error) {
        status.addError(std::wstring(kind.name) + L": " + Strings::widen(error.what()));
        return nullptr;
    }
}

} // namespace

const Component* ModelBuilder::box(double dx, double dy, double dz, const Look& look, Status& status)
{
    const Size sizes[] = {{L"length", dx}, {L"width", dy}, {L"height", dz}};
    return add(m_asset, {ModelKernel::Primitive::Box, L"Box"}, sizes, look, status);
}

const Component* ModelBuilder::cylinder(double radius, double height, const Look& look, Status& status)
{
    const Size sizes[] = {{L"radius", radius}, {L"height", height}};
    return add(m_asset, {ModelKernel::Primitive::Cylinder, L"Cylinder"}, sizes, look, status);
}

const Component* ModelBuilder::sphere(double radius, const Look& look, Status& status)
{
    const Size sizes[] = {{L"radius", radius}};
    return add(m_asset, {ModelKernel::Primitive::Sphere, L"Sphere"}, sizes, look, status);
}

const Component* ModelBuilder::cone(double radius, double topRadius, double height, const Look& look,
                                    Status& status)
{
    const Size sizes[] = {
        {L"radius", radius, topRadius != 0}, {L"radius at the top", topRadius, true}, {L"height", height}};
    return add(m_asset, {ModelKernel::Primitive::Cone, L"Cone"}, sizes, look, status);
}

const Component* ModelBuilder::torus(double radius, double tubeRadius, const Look& look, Status& status)
{
    if (tubeRadius >= radius) {
        status.addError(L"Torus: the radius of the tube must be less than that of the ring.");
        return nullptr;
    }
    const Size sizes[] = {{L"radius", radius}, {L"radius of the tube", tubeRadius}};
    return add(m_asset, {ModelKernel::Primitive::Torus, L"Torus"}, sizes, look, status);
}

} // namespace Vs
