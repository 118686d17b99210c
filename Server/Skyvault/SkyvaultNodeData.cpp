#include "Server/Skyvault/SkyvaultNodeData.h"

#include "Server/Skyvault/SkyvaultUtilities.h"

namespace Vs {

const std::string& SkyvaultNodeData::rootKind()
{
    static const std::string kind = "root";
    return kind;
}

const std::string& SkyvaultNodeData::folderKind()
{
    static const std::string kind = "folder";
    return kind;
}

const std::string& SkyvaultNodeData::fileKind()
{
    static const std::string kind = "file";
    return kind;
}

const std::string& SkyvaultNodeData::timeFormat()
{
    static const std::string format = "yyyy-MM-dd'T'HH:mm:ss.zzz'Z'";
    return format;
}

std::string SkyvaultNodeData::name() const
{
    return m_id.substr(m_id.rfind('/') + 1);
}

const SkyvaultNodeData* SkyvaultNodeData::findChild(const std::string& name) const
{
    for (const SkyvaultNodeData& child : m_children)
        if (child.name() == name)
            return &child;
    return nullptr;
}

SkyvaultNodeData* SkyvaultNodeData::findChild(const std::string& name)
{
    for (SkyvaultNodeData& child : m_children)
        if (child.name() == name)
            return &child;
    return nullptr;
}

boost::filesystem::path SkyvaultNodeData::cachePath(const BaseAuth* auth) const
{
    const boost::filesystem::path root = SkyvaultUtilities::currentCachePath(auth);
    return m_id.size() > 1 ? boost::filesystem::path(root.string() + m_id) : root;
}

} // namespace Vs
