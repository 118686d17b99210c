#pragma once

#include "Server/DataModel/Model/ModelSource.h"

#include <vector>

namespace Vs {
class Document;
} // namespace Vs

/// Whether a document is at rest, so that it can be written as it is. Main thread.
namespace Vs::Recovery {

/// No step and no group of steps is open.
[[nodiscard]] bool isFree(const Document& document);

/// Keeps other threads out of the kernels of a document as long as it lives.
class KernelHolds
{
public:
    /// Doesn't wait for a thread that is in one of them.
    explicit KernelHolds(const Document& document);
    /// Whether none was.
    [[nodiscard]] bool all() const { return m_all; }

private:
    std::vector<ModelSource::Hold> m_holds;
    bool m_all = true;
};

} // namespace Vs::Recovery
