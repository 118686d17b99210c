#pragma once

#include "Server/Base/ResourceMgr.h"

namespace Vu::Design {

/// The design add-in's icons, menus and toolbars. The store owns them; they live until the process ends. Main
/// thread only.
class Resources : public Vs::ResourceMgr
{
public:
    static Vs::ImageSetResource* Box();
    static Vs::ImageSetResource* Cylinder();
    static Vs::ImageSetResource* Sphere();
    static Vs::ImageSetResource* Cone();
    static Vs::ImageSetResource* Torus();
    static Vs::ImageSetResource* Export();
    static Vs::ImageSetResource* Import();
    static Vs::ImageSetResource* Design();
    static Vs::ImageSetResource* Simulation();
    static Vs::ImageSetResource* Documentation();
    static Vs::ImageSetResource* Move();
    static Vs::ImageSetResource* Copy();
    static Vs::ImageSetResource* Rotate();
    static Vs::ImageSetResource* Join();
    static Vs::ImageSetResource* Cut();
    static Vs::ImageSetResource* Intersect();
    static Vs::ImageSetResource* Fillet();
    static Vs::ImageSetResource* Chamfer();
    static Vs::ImageSetResource* Mirror();
    static Vs::ImageSetResource* LinearPattern();
    static Vs::ImageSetResource* CircularPattern();
    static Vs::ImageSetResource* Colour();
    /// `file` is in the folder Samples: L"Samples/Flange.png".
    static Vs::Resource* SamplePicture(const std::wstring& file);
    static Vs::Resource* MenusXml();
    static Vs::Resource* ToolbarXml();

private:
    Resources();
    static Resources* get();
};

} // namespace Vu::Design
