#include "UI/Base/Session/Private/PathList.h"

#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/tokenizer.hpp>

#include <algorithm>

namespace Vu::PathList {
namespace {

std::wstring asField(std::wstring path)
{
    if (path.find_first_of(L"|\"\\") == std::wstring::npos)
        return path;
    boost::replace_all(path, L"\\", L"\\\\");
    boost::replace_all(path, L"\"", L"\\\"");
    return L'"' + path + L'"';
}

/// None if the text is not a list of fields.
std::vector<std::wstring> fieldsOf(const std::wstring& text)
{
    try {
        const boost::escaped_list_separator<wchar_t> bars(L'\\', L'|', L'"');
        const boost::tokenizer<boost::escaped_list_separator<wchar_t>, std::wstring::const_iterator,
                               std::wstring>
            fields(text.begin(), text.end(), bars);
        return {fields.begin(), fields.end()};
    } catch (const boost::escaped_list_error&) {
        return {};
    }
}

/// Null, with an error, if nothing has that name.
Vs::StrongRef<Vs::Selection> object(const std::wstring& path, Vs::Asset& asset, Vs::Status& status)
{
    auto found = Vs::findPath(asset, path, status);
    const std::string id = Vs::Strings::narrow(path);
    if (!found && asset.findComponent(id)) {
        found = Vs::ObjectPath{.component = id};
        status.clear();
    }
    if (!found)
        return nullptr;
    return Vs::StrongRef<Vs::Selection>(new Vs::LogicalSelection(&asset, *found, nullptr));
}

} // namespace

std::wstring text(const std::vector<std::wstring>& paths)
{
    if (paths.size() == 1)
        return paths.front();
    std::wstring text;
    for (const std::wstring& path : paths)
        text += (text.empty() ? L"" : L"|") + asField(path);
    return text;
}

std::optional<std::vector<Vs::StrongRef<Vs::Selection>>> objects(const std::wstring& text, Vs::Asset& asset,
                                                                 Vs::Status& status)
{
    // A name may contain a bar, so the text is first taken as one path.
    if (auto only = object(text, asset, status))
        return std::vector{std::move(only)};
    const std::vector<std::wstring> fields = fieldsOf(text);
    if (fields.size() < 2)
        return std::nullopt;
    status.clear();
    std::vector<Vs::StrongRef<Vs::Selection>> found;
    for (const std::wstring& field : fields) {
        found.push_back(object(field, asset, status));
        if (!found.back())
            return std::nullopt;
    }
    return found;
}

} // namespace Vu::PathList
