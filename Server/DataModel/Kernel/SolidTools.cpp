#include "Server/DataModel/Kernel/SolidTools.h"

#include <BRepGProp.hxx>
#include <BRep_Builder.hxx>
#include <GProp_GProps.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>

namespace Vs::Kernel {

double roughVolume(const TopoDS_Shape& shape)
{
    double volume = 0;
    for (TopExp_Explorer solids(shape, TopAbs_SOLID); solids.More(); solids.Next()) {
        GProp_GProps properties;
        BRepGProp::VolumeProperties(solids.Current(), properties);
        volume += properties.Mass();
    }
    return volume;
}

TopoDS_Shape solidsOf(const TopoDS_Shape& shape)
{
    TopoDS_Compound all;
    BRep_Builder builder;
    builder.MakeCompound(all);
    TopoDS_Shape first;
    int count = 0;
    for (TopExp_Explorer solids(shape, TopAbs_SOLID); solids.More(); solids.Next(), ++count) {
        builder.Add(all, solids.Current());
        if (first.IsNull())
            first = solids.Current();
    }
    return count > 1 ? all : first;
}

} // namespace Vs::Kernel
