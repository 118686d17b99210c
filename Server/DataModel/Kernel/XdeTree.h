#pragma once

#include "Server/DataModel/Model/PartTree.h"

#include <Standard_GUID.hxx>
#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

/// The colours that parts of a shape have of their own, the more special one behind the more general.
struct ShapeColours
{
    struct Entry
    {
        TopoDS_Shape part;
        Colour colour;
    };
    std::vector<Entry> entries;
};

/// A component tree as the labels of an XDE document tell it, and the shapes of its bodies.
struct XdeTree
{
    PartTree tree;
    /// For each of the tree's bodies: its shape, without a location of its own.
    std::vector<TopoDS_Shape> shapes;
    std::vector<ShapeColours> colours;
};

XdeTree readXdeTree(const Handle(TDocStd_Document) & document);
/// The same for what stands at places (ModelKernel::branches).
XdeTree readXdeBranches(const Handle(TDocStd_Document) & document, const std::vector<std::string>& places,
                        bool deep);

/// The name that stands on a label; empty if there is none.
std::wstring nameOf(const TDF_Label& label);
void setName(const TDF_Label& label, const std::wstring& name);
/// Whether the name is one that writers of exchange files make up where the designer gave none.
bool isMadeUp(const std::wstring& name);
/// Marks a label whose name a user has given, which counts even if it looks made up.
const Standard_GUID& namedByUser();

/// The shape of one body, without a location of its own, and its colours.
TopoDS_Shape bodyShape(const TDF_Label& label);
ShapeColours bodyColours(const TDF_Label& label);
/// PartTree::Body::revision.
uint64_t revisionOf(const TopoDS_Shape& body);

/// Whether what stands on the label isn't hidden by itself.
bool isShown(const TDF_Label& label);

std::string entryOf(const TDF_Label& label);

GkMatrix3d toMatrix(const gp_Trsf& motion);
/// The motion that a rigid matrix describes; throws Standard_Failure if it is none.
gp_Trsf toMotion(const GkMatrix3d& matrix);

} // namespace Vs::Kernel
