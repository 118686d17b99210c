#include "Server/DataModel/Kernel/EditableModel.h"

#include "Server/DataModel/Kernel/EditLook.h"
#include "Server/DataModel/Kernel/EditPlaces.h"
#include "Server/DataModel/Kernel/EditSolids.h"
#include "Server/DataModel/Kernel/Guarded.h"
#include "Server/DataModel/Kernel/XdePaste.h"

#include <optional>
#include <stdexcept>

namespace Vs::Kernel {

std::vector<std::string> EditableModel::edit(const ModelEdit& edit)
{
    return guarded([&] {
        prepare(edit);
        return std::visit(
            [&](const auto& each) {
                if constexpr (requires { apply(document(), each, m_made, m_log); })
                    return apply(document(), each, m_made, m_log);
                else if constexpr (requires { apply(document(), each, m_log); })
                    return apply(document(), each, m_log);
                else
                    return apply(document(), each);
            },
            edit);
    });
}

void EditableModel::prepare(const ModelEdit& edit)
{
    const auto* move = std::get_if<MoveEdit>(&edit);
    const auto labels = move ? movedAlone(document(), *move) : std::nullopt;
    if (!labels)
        transaction().beginKernel();
    else
        for (const TDF_Label& label : *labels)
            transaction().note(label);
}

std::vector<std::string> EditableModel::paste(ModelKernel& source, const std::vector<std::string>& components)
{
    auto* other = dynamic_cast<EditableModel*>(&source);
    if (!other)
        throw std::runtime_error("the other model is of another kernel");
    return guarded([&] {
        transaction().beginKernel();
        std::vector<std::string> added;
        const auto work = [&] { added = pasteOccurrences(document(), other->document(), components); };
        if (other == this)
            work();
        else
            other->transaction().withoutRemoved(work);
        return added;
    });
}

std::shared_ptr<const PartSuccessors> EditableModel::successors(uint64_t before, uint64_t after)
{
    return guarded([&] { return m_log.between(before, after); });
}

std::unique_ptr<ModelChange> EditableModel::commit()
{
    std::unique_ptr<ModelChange> change = XdeModel::commit();
    guarded([&] { m_log.settle(true); });
    return change;
}

void EditableModel::abort()
{
    XdeModel::abort();
    guarded([&] { m_log.settle(false); });
}

} // namespace Vs::Kernel
