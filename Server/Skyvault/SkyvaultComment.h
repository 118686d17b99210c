#pragma once

#include <string>

namespace Vs {

/// A remark on a file of the cloud drive: a value.
class SkyvaultComment
{
public:
    SkyvaultComment() = default;
    SkyvaultComment(std::string nodeId, std::wstring text)
        : m_nodeId(std::move(nodeId)), m_text(std::move(text))
    {
    }

    /// The file's identifier, as SkyvaultNodeData::id.
    const std::string& nodeId() const { return m_nodeId; }
    const std::wstring& text() const { return m_text; }
    /// Who wrote it; empty until it is on the drive.
    const std::wstring& author() const { return m_author; }
    void author(std::wstring name) { m_author = std::move(name); }

private:
    std::string m_nodeId;
    std::wstring m_text, m_author;
};

} // namespace Vs
