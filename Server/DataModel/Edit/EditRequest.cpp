#include "Server/DataModel/Edit/EditRequest.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/Motion.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/DataModel/Texts.h"

namespace Vs {

using DataModel::localized;
using DataModel::localizedFormat;

namespace {

constexpr size_t kMostCopies = 100000;

std::vector<std::string> namedBy(const MoveEdit& edit)
{
    return edit.components;
}

std::vector<std::string> namedBy(const CopyEdit& edit)
{
    return edit.components;
}

std::wstring whyWrong(const GkMatrix3d& motion)
{
    if (!isMotion(motion))
        return localized("EditNoMotion",
                         "things are moved and turned, but not scaled or mirrored, by a motion.");
    if (!isNear(motion))
        return localized("EditTooFar", "that is farther than a thousand kilometres.");
    return {};
}

std::wstring whyWrong(const MoveEdit& edit)
{
    return whyWrong(edit.motion);
}

std::wstring whyWrong(const CopyEdit& edit)
{
    if (edit.motions.size() * edit.components.size() > kMostCopies)
        return localizedFormat("EditTooMany", "more than %1% copies at once would be made.", kMostCopies);
    for (const GkMatrix3d& motion : edit.motions)
        if (const std::wstring why = whyWrong(motion); !why.empty())
            return why;
    return {};
}

} // namespace

EditRequest* EditRequest::make(const Asset* asset, const std::wstring& name, ModelEdit edit)
{
    return new EditRequest(asset, name, std::move(edit));
}

EditRequest::EditRequest(const Asset* asset, const std::wstring& name, ModelEdit edit)
    : Implements(name), m_asset(asset), m_edit(std::move(edit))
{
}

void EditRequest::onExecute(Asset& asset, Status& status)
{
    m_added.clear();
    const std::vector<std::string> named = std::visit([](const auto& edit) { return namedBy(edit); }, m_edit);
    std::wstring why = std::visit([](const auto& edit) { return whyWrong(edit); }, m_edit);
    if (named.empty() || &asset != m_asset)
        why = localized("EditNothing", "nothing of this model is named that could be changed.");
    if (!why.empty()) {
        status.addError(name() + L": " + why);
        return;
    }
    for (const std::string& component : named)
        if (!ObjectPath{.component = component}.resolve(asset, status))
            return;
    m_added = asset.data().history().changeModel([&](ModelKernel& kernel) { return kernel.edit(m_edit); });
}

} // namespace Vs
