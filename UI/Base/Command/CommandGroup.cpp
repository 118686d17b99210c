#include "UI/Base/Command/CommandGroup.h"

#include "Server/Base/UniqueString.h"

using Vs::UniqueString;

namespace Vu {

const UniqueString* CommandGroup::BaseGroup()
{
    static const UniqueString* const name = UniqueString::find("BaseGroup");
    return name;
}

const UniqueString* CommandGroup::DocumentGroup()
{
    static const UniqueString* const name = UniqueString::find("DocumentGroup");
    return name;
}

const UniqueString* CommandGroup::DebugGroup()
{
    static const UniqueString* const name = UniqueString::find("DebugGroup");
    return name;
}

const UniqueString* CommandGroup::WorkspaceGroup()
{
    static const UniqueString* const name = UniqueString::find("WorkspaceGroup");
    return name;
}

const UniqueString* CommandGroup::ShellGroup()
{
    static const UniqueString* const name = UniqueString::find("ShellGroup");
    return name;
}

const UniqueString* CommandGroup::VisualizationGroup()
{
    static const UniqueString* const name = UniqueString::find("VisualizationGroup");
    return name;
}

const UniqueString* CommandGroup::CameraGroup()
{
    static const UniqueString* const name = UniqueString::find("CameraGroup");
    return name;
}

const UniqueString* CommandGroup::SelectGroup()
{
    static const UniqueString* const name = UniqueString::find("SelectGroup");
    return name;
}

const UniqueString* CommandGroup::VeloraSolidGroup()
{
    static const UniqueString* const name = UniqueString::find("VeloraSolidGroup");
    return name;
}

const UniqueString* CommandGroup::ScriptGroup()
{
    static const UniqueString* const name = UniqueString::find("ScriptGroup");
    return name;
}

const UniqueString* StackingCategory::defaultStackingCategory()
{
    static const UniqueString* const name = UniqueString::find("DefaultStackingCategory");
    return name;
}

const UniqueString* StackingCategory::cameraStackingCategory()
{
    static const UniqueString* const name = UniqueString::find("CameraStackingCategory");
    return name;
}

const UniqueString* StackingCategory::selectionFilterStackingCategory()
{
    static const UniqueString* const name = UniqueString::find("SelectionFilterStackingCategory");
    return name;
}

const UniqueString* StackingCategory::viewStackingCategory()
{
    static const UniqueString* const name = UniqueString::find("ViewStackingCategory");
    return name;
}

} // namespace Vu
