#pragma once

#include "Server/Base/Object.h"

#include <string>

namespace Vs {

/// A kind of native document. Registered with DocumentMgr by the add-in that brings it.
class DocumentType : public Implements<DocumentType>
{
public:
    /// The extension is given with its dot: L".vlra".
    DocumentType(std::string identifier, std::wstring name, std::wstring extension)
        : m_identifier(std::move(identifier)), m_name(std::move(name)), m_extension(std::move(extension))
    {
    }

    const std::string& identifier() const { return m_identifier; }
    const std::wstring& name() const { return m_name; }
    const std::wstring& extension() const { return m_extension; }

private:
    std::string m_identifier;
    std::wstring m_name;
    std::wstring m_extension;
};

} // namespace Vs
