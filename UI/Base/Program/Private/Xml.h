#pragma once

#include "Server/Base/Status.h"

#include <QFile>
#include <QXmlStreamReader>

#include <optional>
#include <string>

namespace Vu {

/// Reads one of the host's XML files element by element; every problem becomes an error `FILE:LINE: message`.
/// Private to this library.
class XmlFile
{
public:
    /// `root` is the name that the root element must have.
    XmlFile(std::wstring path, const char* root, Vs::Status& status);

    /// Opens the file and enters the root element. False, with an error, if there is no such file or root.
    [[nodiscard]] bool open();

    /// Goes on to the next child of the element that is being read; false at that element's end, which is
    /// thereby left. After true the child has to be read to its own end, or skipped.
    [[nodiscard]] bool nextElement();
    void skip();

    const std::wstring& path() const { return m_path; }
    QStringView name() const { return m_xml.name(); }
    /// Empty if it is absent.
    [[nodiscard]] std::wstring attribute(const char* name) const;
    [[nodiscard]] std::optional<std::wstring> optionalAttribute(const char* name) const;
    /// The element's text; leaves the element.
    std::wstring text();

    /// Adds an error at the present line. Reading goes on.
    void problem(const std::wstring& message);
    /// Whether the file could not be read to its end: missing, or no well-formed XML.
    bool broken() const { return m_broken; }

private:
    void checkForm();

    std::wstring m_path;
    const char* m_root;
    Vs::Status& m_status;
    QFile m_file;
    QXmlStreamReader m_xml;
    bool m_broken = false;
};

} // namespace Vu
