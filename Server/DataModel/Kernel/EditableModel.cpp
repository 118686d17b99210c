#include "Server/DataModel/Kernel/EditableModel.h"

#include "Server/DataModel/Kernel/Edits.h"
#include "Server/DataModel/Kernel/Guarded.h"

namespace Vs::Kernel {

std::vector<std::string> EditableModel::edit(const ModelEdit& edit)
{
    return guarded(
        [&] { return std::visit([&](const auto& each) { return apply(document(), each); }, edit); });
}

} // namespace Vs::Kernel
