#pragma once

#include <boost/filesystem/path.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace Vs {

class BaseAuth;

/// One node of the drive's tree: a value, with the children at the time of reading.
class SkyvaultNodeData
{
public:
    /// The kinds of nodes in listings.
    static const std::string& rootKind();   ///< "root"
    static const std::string& folderKind(); ///< "folder"
    static const std::string& fileKind();   ///< "file"
    /// The format of times in listings: "yyyy-MM-dd'T'HH:mm:ss.zzz'Z'".
    static const std::string& timeFormat();

    SkyvaultNodeData() = default;
    SkyvaultNodeData(std::string id, std::string kind) : m_id(std::move(id)), m_kind(std::move(kind)) {}

    /// The path on the drive, from its root, UTF-8; empty for a node that doesn't represent anything yet.
    const std::string& id() const { return m_id; }
    /// The last part of the identifier, UTF-8.
    std::string name() const;
    const std::string& kind() const { return m_kind; }
    bool isFolder() const { return m_kind == rootKind() || m_kind == folderKind(); }
    const std::string& etag() const { return m_etag; }
    void etag(const std::string& value) { m_etag = value; }
    std::uint64_t size() const { return m_size; }
    void size(std::uint64_t bytes) { m_size = bytes; }
    const std::string& modified() const { return m_modified; } ///< In timeFormat.
    void modified(const std::string& time) { m_modified = time; }

    const std::vector<SkyvaultNodeData>& children() const { return m_children; }
    void children(std::vector<SkyvaultNodeData> nodes) { m_children = std::move(nodes); }
    /// Null if absent. The pointer is valid as long as this node's children don't change.
    const SkyvaultNodeData* findChild(const std::string& name) const;
    SkyvaultNodeData* findChild(const std::string& name);
    void assign(const SkyvaultNodeData& node) { *this = node; }

    /// Where the node is, or would be, in the user's cache: a folder for a folder, a file for a file.
    boost::filesystem::path cachePath(const BaseAuth* auth) const;

private:
    std::string m_id, m_kind, m_etag, m_modified;
    std::uint64_t m_size = 0;
    std::vector<SkyvaultNodeData> m_children;
};

} // namespace Vs
