#pragma once

#include "Server/DataModel/Model/PartTree.h"

#include <Standard_GUID.hxx>
#include <TDF_Label.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Shape.hxx>

#include <string>
#include <vector>

namespace Vs::Kernel {

/// The colours set on parts of a shape, general ones before more specific ones, and what materials say.
struct ShapeColours
{
    struct Entry
    {
        TopoDS_Shape part;
        Colour colour;
        Finish finish; ///< If it is known; otherwise the whole shape's.
    };
    std::vector<Entry> entries;
    Finish finish; ///< Of the whole shape.
};

/// A component tree read from the labels of an XDE document, and the shapes of its bodies.
struct XdeTree
{
    PartTree tree;
    /// The shape of each of the tree's bodies, without its own location.
    std::vector<TopoDS_Shape> shapes;
    std::vector<ShapeColours> colours;
};

XdeTree readXdeTree(const Handle(TDocStd_Document) & document);
/// The same for what is at these places (ModelKernel::branches).
XdeTree readXdeBranches(const Handle(TDocStd_Document) & document, const std::vector<std::string>& places,
                        bool deep);

/// The name on a label; empty if there is none.
std::wstring nameOf(const TDF_Label& label);
void setName(const TDF_Label& label, const std::wstring& name);
/// Whether the name is one that writers of exchange files make up when the designer gave none.
bool isMadeUp(const std::wstring& name);
/// Marks a label as named by a user, so that the name counts even if it looks made up.
const Standard_GUID& namedByUser();

/// The shape of one body, without a location of its own, and its colours.
TopoDS_Shape bodyShape(const TDF_Label& label);
ShapeColours bodyColours(const TDF_Label& label);
/// PartTree::Body::revision.
uint64_t revisionOf(const TopoDS_Shape& body);

/// Whether what the label holds isn't itself hidden.
bool isShown(const TDF_Label& label);

std::string entryOf(const TDF_Label& label);

GkMatrix3d toMatrix(const gp_Trsf& motion);
/// The motion of a rigid matrix; throws Standard_Failure if it isn't rigid.
gp_Trsf toMotion(const GkMatrix3d& matrix);

} // namespace Vs::Kernel
