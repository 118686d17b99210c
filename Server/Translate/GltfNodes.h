#pragma once

#include <string_view>

namespace Vs::Translate {

/// Examines the nodes of a glTF file's text before the kernel, which recurses for each level and creates each
/// occurrence. Throws Unreadable if a node contains itself, or if there are more levels or occurrences than
/// can be shown. Invalid text is left to the kernel, which can say why.
void checkGltfNodes(std::string_view json);

} // namespace Vs::Translate
