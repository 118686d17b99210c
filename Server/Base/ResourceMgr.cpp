#include "Server/Base/ResourceMgr.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"

#include <boost/filesystem/operations.hpp>

#include <map>
#include <unordered_map>

namespace Vs {

std::wstring Resource::localized(const std::wstring& path)
{
    static const std::wstring folder = (PathInfo::rootDirectory() / "Localization").wstring() + L'/';
    if (!path.starts_with(folder))
        return path;
    const size_t slash = path.find(L'/', folder.size());
    if (slash == std::wstring::npos)
        return path;
    static const std::wstring english = L"en";
    const std::wstring rest = path.substr(slash);
    const std::wstring language = Strings::widen(StringTable::language());
    if (language != english) {
        std::wstring own = folder + language + rest;
        boost::system::error_code error;
        if (boost::filesystem::exists(own, error))
            return own;
    }
    return folder + english + rest;
}

std::wstring Resource::localPath() const
{
    return localized(m_path);
}

const std::vector<int>& ImageSetResource::sizes()
{
    static const std::vector<int> sizes{16, 24, 32, 64};
    return sizes;
}

std::wstring ImageSetResource::fileForSize(int pixels) const
{
    if (path().ends_with(L".png"))
        return localPath();
    int chosen = sizes().back();
    for (auto size = sizes().rbegin(); size != sizes().rend() && *size >= pixels; ++size)
        chosen = *size;
    const std::wstring number = std::to_wstring(chosen);
    return localized(path() + L'/' + number + L'x' + number + L".png");
}

CursorResource* CursorResource::defaultCursor(int shape)
{
    assertMainThread();
    static std::map<int, std::unique_ptr<CursorResource>> cursors;
    std::unique_ptr<CursorResource>& cursor = cursors[shape];
    if (!cursor) {
        cursor = std::make_unique<CursorResource>(std::wstring(), -1, -1);
        cursor->m_shape = shape;
    }
    return cursor.get();
}

struct ResourceMgr::Data
{
    boost::filesystem::path folder;
    // By kind, since one path may be asked for as a picture and as a plain file.
    std::unordered_map<std::wstring, std::unique_ptr<ImageSetResource>> imageSets;
    std::unordered_map<std::wstring, std::unique_ptr<CursorResource>> cursors;
    std::unordered_map<std::wstring, std::unique_ptr<ImageResource>> images;
    std::unordered_map<std::wstring, std::unique_ptr<Resource>> resources;

    template <class Kind, class... Arguments>
    Kind* serve(std::unordered_map<std::wstring, std::unique_ptr<Kind>>& all, const std::wstring& path,
                Arguments... arguments)
    {
        assertMainThread();
        require(!path.empty(), "a resource has a path below its manager's folder");
        std::unique_ptr<Kind>& resource = all[path];
        if (!resource)
            resource = std::make_unique<Kind>((folder / path).wstring(), arguments...);
        return resource.get();
    }
};

ResourceMgr::ResourceMgr(boost::filesystem::path folder) : m_data(std::make_unique<Data>())
{
    m_data->folder = std::move(folder);
}

ResourceMgr::~ResourceMgr() = default;

ImageSetResource* ResourceMgr::imageSet(const std::wstring& path)
{
    return m_data->serve(m_data->imageSets, path);
}

CursorResource* ResourceMgr::cursor(const std::wstring& path, int hotX, int hotY)
{
    return m_data->serve(m_data->cursors, path, hotX, hotY);
}

ImageResource* ResourceMgr::image(const std::wstring& path)
{
    return m_data->serve(m_data->images, path);
}

Resource* ResourceMgr::resource(const std::wstring& path)
{
    return m_data->serve(m_data->resources, path);
}

} // namespace Vs
