#pragma once

namespace Vs {
class UniqueString;
}

namespace Vu {

/// The names of the groups that command definitions join. Environments and menus show commands by group.
class CommandGroup
{
public:
    static const Vs::UniqueString* BaseGroup();
    static const Vs::UniqueString* DocumentGroup();
    static const Vs::UniqueString* DebugGroup();
    static const Vs::UniqueString* WorkspaceGroup();
    static const Vs::UniqueString* ShellGroup();
    static const Vs::UniqueString* VisualizationGroup();
    static const Vs::UniqueString* CameraGroup();
    static const Vs::UniqueString* SelectGroup();
    static const Vs::UniqueString* VeloraSolidGroup();
    static const Vs::UniqueString* ScriptGroup(); ///< What scripts bring (quillet.command).
};

/// The categories in which commands stack over the active one. There is at most one running command of a
/// category: a second one replaces the first.
class StackingCategory
{
public:
    static const Vs::UniqueString* defaultStackingCategory();
    static const Vs::UniqueString* cameraStackingCategory();
    static const Vs::UniqueString* selectionFilterStackingCategory();
    static const Vs::UniqueString* viewStackingCategory();
};

} // namespace Vu
