#pragma once

#include <string_view>

namespace Vs::Translate {

/// Looks through the nodes of a glTF file's text before the kernel does, which calls itself for each level
/// and makes each occurrence. Throws Unreadable if a node contains itself, or if there are more levels or
/// occurrences than can be shown. Text that isn't valid is left to the kernel, which knows why.
void checkGltfNodes(std::string_view json);

} // namespace Vs::Translate
