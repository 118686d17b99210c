#include "UI/Base/Program/Tour.h"

#include "Server/Base/Strings.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Private/Xml.h"

namespace Vu {
namespace {

std::wstring localizedAttribute(const XmlFile& xml, const char* name)
{
    const std::wstring english = xml.attribute(name);
    const std::string key = Vs::Strings::narrow(xml.attribute((std::string(name) + "Key").c_str()));
    return key.empty() ? english : localized(key.c_str(), Vs::Strings::narrow(english).c_str());
}

} // namespace

std::vector<TourStep> readTour(const std::wstring& path, Vs::Status& status)
{
    std::vector<TourStep> steps;
    XmlFile xml(path, "tour", status);
    if (!xml.open())
        return steps;
    while (xml.nextElement()) {
        if (xml.name() != QLatin1String("step"))
            xml.problem(L"<" + xml.name().toString().toStdWString() + L"> is not a step.");
        else if (xml.attribute("contents").empty())
            xml.problem(L"A step needs the contents of an area.");
        else
            steps.push_back({Vs::Strings::narrow(xml.attribute("contents")), localizedAttribute(xml, "title"),
                             localizedAttribute(xml, "text")});
        xml.skip();
    }
    return steps;
}

} // namespace Vu
