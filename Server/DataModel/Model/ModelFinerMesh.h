#pragma once

#include "Server/Body/FinerMesh.h"
#include "Server/DataModel/Model/ModelSource.h"

#include <memory>
#include <string>

namespace Vs {

/// The finer forms of a mesh of an asset's model. Those of a body that is in a file are kept in the import
/// cache, where they are found without the kernel.
class ModelFinerMesh : public FinerMesh
{
public:
    /// As ModelBody's.
    ModelFinerMesh(const std::shared_ptr<ModelSource>& source, std::string entry, int fileIndex)
        : m_source(source), m_entry(std::move(entry)), m_fileIndex(fileIndex)
    {
    }

    std::shared_ptr<const BodyMesh> make(const std::weak_ptr<const BodyMesh>& mesh, int level,
                                         const std::function<bool()>& goOn) override;
    std::shared_ptr<const void> source() const override { return m_source.lock(); }

private:
    double deviationOf(const std::weak_ptr<const BodyMesh>& mesh, int level);
    std::shared_ptr<const BodyMesh> makeAnew(ModelSource& source, double deviation, int level,
                                             const std::function<bool()>& goOn) const;

    std::weak_ptr<ModelSource> m_source; ///< The asset may be closed while a mesh is still looked at.
    std::string m_entry;
    int m_fileIndex;
};

} // namespace Vs
