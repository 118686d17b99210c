#include "UI/Design/Resources.h"

#include "Server/Base/PathInfo.h"

namespace Vu::Design {

Resources::Resources()
    : Vs::ResourceMgr(Vs::PathInfo::localizationDirectory(true) / "UI" / "Design" / "Resources")
{
}

Resources* Resources::get()
{
    static Resources resources;
    return &resources;
}

Vs::ImageSetResource* Resources::Box()
{
    return get()->imageSet(L"Box");
}

Vs::ImageSetResource* Resources::Cylinder()
{
    return get()->imageSet(L"Cylinder");
}

Vs::ImageSetResource* Resources::Sphere()
{
    return get()->imageSet(L"Sphere");
}

Vs::ImageSetResource* Resources::Cone()
{
    return get()->imageSet(L"Cone");
}

Vs::ImageSetResource* Resources::Torus()
{
    return get()->imageSet(L"Torus");
}

Vs::ImageSetResource* Resources::Export()
{
    return get()->imageSet(L"Export");
}

Vs::ImageSetResource* Resources::Import()
{
    return get()->imageSet(L"Import");
}

Vs::ImageSetResource* Resources::Design()
{
    return get()->imageSet(L"Design");
}

Vs::ImageSetResource* Resources::Simulation()
{
    return get()->imageSet(L"Simulation");
}

Vs::ImageSetResource* Resources::Documentation()
{
    return get()->imageSet(L"Documentation");
}

Vs::ImageSetResource* Resources::Move()
{
    return get()->imageSet(L"Edit/Move");
}

Vs::ImageSetResource* Resources::Copy()
{
    return get()->imageSet(L"Edit/Copy");
}

Vs::ImageSetResource* Resources::Rotate()
{
    return get()->imageSet(L"Edit/Rotate");
}

Vs::ImageSetResource* Resources::Join()
{
    return get()->imageSet(L"Edit/Join");
}

Vs::ImageSetResource* Resources::Cut()
{
    return get()->imageSet(L"Edit/Cut");
}

Vs::ImageSetResource* Resources::Intersect()
{
    return get()->imageSet(L"Edit/Intersect");
}

Vs::ImageSetResource* Resources::Fillet()
{
    return get()->imageSet(L"Edit/Fillet");
}

Vs::ImageSetResource* Resources::Chamfer()
{
    return get()->imageSet(L"Edit/Chamfer");
}

Vs::ImageSetResource* Resources::Mirror()
{
    return get()->imageSet(L"Edit/Mirror");
}

Vs::ImageSetResource* Resources::LinearPattern()
{
    return get()->imageSet(L"Edit/LinearPattern");
}

Vs::ImageSetResource* Resources::CircularPattern()
{
    return get()->imageSet(L"Edit/CircularPattern");
}

Vs::ImageSetResource* Resources::Colour()
{
    return get()->imageSet(L"Edit/Colour");
}

Vs::Resource* Resources::SamplePicture(const std::wstring& file)
{
    return get()->resource(file);
}

Vs::Resource* Resources::MenusXml()
{
    return get()->resource(L"Toolbar/Menus.xml");
}

Vs::Resource* Resources::ToolbarXml()
{
    return get()->resource(L"Toolbar/Toolbars.xml");
}

} // namespace Vu::Design
