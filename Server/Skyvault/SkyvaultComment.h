#pragma once

#include <string>

namespace Vs {

/// A remark on a file of the cloud drive: a value. UTF-8.
class SkyvaultComment
{
public:
    SkyvaultComment() = default;
    explicit SkyvaultComment(std::string body) : m_body(std::move(body)) {}

    const std::string& body() const { return m_body; }
    void setBody(std::string body) { m_body = std::move(body); }

    /// The server's identifier of it; empty until it is on the drive, and if the drive stores comments
    /// without one.
    const std::string& commentId() const { return m_commentId; }
    void setCommentId(std::string id) { m_commentId = std::move(id); }
    /// Who wrote it; empty until it is on the drive.
    const std::wstring& author() const { return m_author; }
    void setAuthor(std::wstring name) { m_author = std::move(name); }

private:
    std::string m_body, m_commentId;
    std::wstring m_author;
};

} // namespace Vs
