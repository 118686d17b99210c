#include "Server/DataModel/Kernel/Materials.h"

#include <TDF_ChildIterator.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_VisMaterial.hxx>
#include <XCAFDoc_VisMaterialTool.hxx>

#include <algorithm>

namespace Vs::Kernel {

Finish finishOf(const TDF_Label& label)
{
    TDF_Label at;
    Handle(XCAFDoc_VisMaterial) material;
    if (!XCAFDoc_VisMaterialTool::GetShapeMaterial(label, at) ||
        !at.FindAttribute(XCAFDoc_VisMaterial::GetID(), material) || !material->HasPbrMaterial())
        return {};
    const XCAFDoc_VisMaterialPBR& made = material->PbrMaterial();
    Finish finish;
    finish.isKnown = 1;
    finish.metallic = toShare(double(made.Metallic));
    finish.roughness = toShare(double(made.Roughness));
    for (int i = 0; i < 3; ++i)
        finish.emissive[size_t(i)] = toShare(double(made.EmissiveFactor[i]));
    finish.isDoubleSided = material->FaceCulling() != Graphic3d_TypeOfBackfacingModel_BackCulled;
    finish.alpha = material->AlphaMode() == Graphic3d_AlphaMode_Mask    ? Finish::Alpha::Mask
                   : material->AlphaMode() == Graphic3d_AlphaMode_Blend ? Finish::Alpha::Blend
                                                                        : Finish::Alpha::Opaque;
    finish.alphaCutoff = toShare(double(material->AlphaCutOff()));
    return finish;
}

void forgetMaterials(const Handle(TDocStd_Document) & document)
{
    if (!XCAFDoc_DocumentTool::CheckVisMaterialTool(document->Main()))
        return;
    const Handle(XCAFDoc_VisMaterialTool) tool = XCAFDoc_DocumentTool::VisMaterialTool(document->Main());
    TDF_LabelSequence materials;
    tool->GetMaterials(materials);
    if (materials.IsEmpty())
        return;
    const TDF_Label shapes = XCAFDoc_DocumentTool::ShapesLabel(document->Main());
    for (TDF_ChildIterator each(shapes, true); each.More(); each.Next())
        tool->UnSetShapeMaterial(each.Value());
}

float toShare(double value)
{
    return value > 0 ? static_cast<float>(std::min(value, 1.0)) : 0.0f;
}

} // namespace Vs::Kernel
