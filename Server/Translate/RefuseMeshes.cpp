#include "Server/Translate/RefuseMeshes.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/Translate/Reading.h"

#include <BRep_Tool.hxx>
#include <Geom_Surface.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

namespace Vs::Translate {

void refuseMeshes(Kernel::XdeModel& model)
{
    const Kernel::XdeTree tree = Kernel::readXdeTree(model.document());
    for (size_t i = 0; i < tree.shapes.size(); ++i)
        for (TopExp_Explorer faces(tree.shapes[i], TopAbs_FACE); faces.More(); faces.Next())
            if (BRep_Tool::Surface(TopoDS::Face(faces.Current())).IsNull())
                throw Unreadable("can't be written: the part \"" + Strings::narrow(tree.tree.bodies[i].name) +
                                 "\" consists of triangles, which only a mesh format can hold");
}

} // namespace Vs::Translate
