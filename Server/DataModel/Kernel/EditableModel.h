#pragma once

#include "Server/DataModel/Kernel/MadeShapes.h"
#include "Server/DataModel/Kernel/ShapeLog.h"
#include "Server/DataModel/Kernel/XdeModel.h"

namespace Vs::Kernel {

/// A model that can be edited. Workers, which only make and write models, are linked without it: it brings
/// the kernel's libraries for booleans and blends.
class EditableModel : public XdeModel
{
public:
    using XdeModel::XdeModel;
    std::shared_ptr<const BodyMesh> mesh(const std::string& entry, const TranslatorRefinement& refinement,
                                         const std::function<bool(double)>& goOn) override;
    std::vector<std::string> edit(const ModelEdit& edit) override;
    std::vector<std::string> paste(ModelKernel& source, const std::vector<std::string>& components) override;
    std::shared_ptr<const PartSuccessors> successors(uint64_t before, uint64_t after) override;
    std::unique_ptr<ModelChange> commit() override;
    void abort() override;

protected:
    /// Long work can be cancelled, and doesn't block the window; a body on the main thread.
    BodyProperties measureBody(const TopoDS_Shape& body, BodyMeasure what) override;
    ShapeAnswer distance(const TopoDS_Shape& first, const TopoDS_Shape& second) override;
    /// If the mesher crashes on a shape, or doesn't finish, only its mesh is lost.
    MeshRunner* meshRunner() const override;

private:
    std::optional<std::vector<std::string>> editSmall(const ModelEdit& edit);

    MadeShapes m_made;
    ShapeLog m_log;
};

} // namespace Vs::Kernel
