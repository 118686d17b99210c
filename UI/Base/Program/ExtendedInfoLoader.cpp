#include "UI/Base/Program/ExtendedInfoLoader.h"

#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/Xml.h"

#include <boost/filesystem/operations.hpp>

#include <unordered_map>

namespace Vu {
namespace {

std::unordered_map<std::wstring, std::wstring>& texts()
{
    static auto* const map = new std::unordered_map<std::wstring, std::wstring>;
    return *map;
}

} // namespace

ExtendedInfoLoader::ExtendedInfoLoader(boost::filesystem::path folder, std::wstring domain)
    : m_folder(std::move(folder)), m_domain(std::move(domain))
{
}

bool ExtendedInfoLoader::load()
{
    const boost::filesystem::path file = m_folder / "ExtendedInfo.xml";
    boost::system::error_code ignored;
    if (!boost::filesystem::exists(file, ignored))
        return true;
    Vs::Status status;
    XmlFile xml(file.wstring(), "extendedInfo", status);
    if (xml.open())
        while (xml.nextElement()) {
            const std::wstring id = xml.attribute("id");
            const std::string key = Vs::Strings::narrow(xml.attribute("key"));
            const std::wstring text = xml.text();
            if (id.empty())
                xml.problem(L"A command needs the attribute \"id\".");
            else
                texts()[id] = key.empty() ? text
                                          : Vs::StringTable::getLocalizedString(
                                                m_domain, key.c_str(), Vs::Strings::narrow(text).c_str());
        }
    if (status.isError())
        Application::get()->inform(status.toString());
    return status.isOk();
}

std::wstring ExtendedInfoLoader::text(const std::wstring& command)
{
    const auto found = texts().find(command);
    return found == texts().end() ? std::wstring() : found->second;
}

} // namespace Vu
