#pragma once

#include <vector>

namespace Vs {

class Asset;
class Document;

/// A document's assets: the visible ones, and after them the hidden ones. Main thread only.
[[nodiscard]] std::vector<Asset*> allAssets(const Document& document);

} // namespace Vs
