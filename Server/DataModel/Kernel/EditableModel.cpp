#include "Server/DataModel/Kernel/EditableModel.h"

#include "Server/DataModel/Kernel/Edits.h"
#include "Server/DataModel/Kernel/Guarded.h"
#include "Server/DataModel/Kernel/XdePaste.h"

#include <stdexcept>

namespace Vs::Kernel {

std::vector<std::string> EditableModel::edit(const ModelEdit& edit)
{
    return guarded([&] {
        return std::visit(
            [&](const auto& each) {
                if constexpr (requires { apply(document(), each, m_made); })
                    return apply(document(), each, m_made);
                else
                    return apply(document(), each);
            },
            edit);
    });
}

std::vector<std::string> EditableModel::paste(ModelKernel& source, const std::vector<std::string>& components)
{
    const auto* other = dynamic_cast<const XdeModel*>(&source);
    if (!other)
        throw std::runtime_error("the other model is of another kernel");
    return guarded([&] { return pasteOccurrences(document(), other->document(), components); });
}

} // namespace Vs::Kernel
