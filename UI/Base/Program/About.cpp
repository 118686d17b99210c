#include "UI/Base/Program/About.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/KernelVersion.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Command/Private/Localized.h"

#include <QSysInfo>
#include <QtGlobal>

namespace Vu {
namespace {

struct LicenceRow
{
    const wchar_t* name;
    const wchar_t* licence;
};

/// What the program links or opens.
constexpr LicenceRow kLicences[] = {
    {L"Open CASCADE Technology", L"LGPL 2.1 with exception"},
    {L"Qt", L"LGPL 3"},
    {L"Boost", L"Boost Software License 1.0"},
    {L"Python", L"PSF License 2"},
    {L"pybind11", L"BSD 3-Clause"},
    {L"libepoxy", L"MIT"},
    {L"libxml2", L"MIT"},
    {L"libzip", L"BSD 3-Clause"},
    {L"zlib", L"zlib License"},
    {L"xxHash", L"BSD 2-Clause"},
    {L"libedit", L"BSD 3-Clause"},
    {L"libseccomp", L"LGPL 2.1"},
    {L"libspnav", L"BSD 3-Clause"},
    {L"oneTBB", L"Apache License 2.0"},
};

} // namespace

std::wstring aboutText()
{
    return L"Quillet " + Vs::Strings::widen(Vs::SoftwareVersion::describeCurrent()) + L'\n' +
           localized("AboutText", "Desktop 3D design. Apache License 2.0.");
}

std::wstring aboutDetails(const std::wstring& graphics)
{
    std::wstring text = localizedFormat("AboutKernel", "Geometry kernel: Open CASCADE Technology %1%",
                                        Vs::Strings::widen(Vs::kernelVersion()));
    text += L"\nQt " + Vs::Strings::widen(qVersion());
    const std::wstring drawn =
        graphics.empty() ? Vs::Scene::OffscreenRenderer::get()->description() : graphics;
    if (!drawn.empty())
        text += L'\n' + localizedFormat("AboutGraphics", "Graphics: %1%", drawn);
    text += L'\n' + localizedFormat("AboutSystem", "System: %1%",
                                    (QSysInfo::prettyProductName() + QStringLiteral(", ") +
                                     QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion())
                                        .toStdWString());
    text += L"\n\n" + localized("AboutLicences", "Libraries and their licences:");
    for (const LicenceRow& row : kLicences)
        text += L'\n' + std::wstring(row.name) + L": " + row.licence;
    return text;
}

} // namespace Vu
