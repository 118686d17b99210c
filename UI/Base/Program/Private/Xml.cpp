#include "UI/Base/Program/Private/Xml.h"

namespace Vu {

XmlFile::XmlFile(std::wstring path, const char* root, Vs::Status& status)
    : m_path(std::move(path)), m_root(root), m_status(status), m_file(QString::fromStdWString(m_path))
{
}

void XmlFile::problem(const std::wstring& message)
{
    m_status.addError(m_path + L":" + std::to_wstring(m_xml.lineNumber()) + L": " + message);
}

void XmlFile::checkForm()
{
    if (!m_xml.hasError() || m_broken)
        return;
    m_broken = true;
    problem(m_xml.errorString().toStdWString());
}

bool XmlFile::open()
{
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_broken = true;
        m_status.addError(m_path + L": " + m_file.errorString().toStdWString());
        return false;
    }
    m_xml.setDevice(&m_file);
    const bool entered = m_xml.readNextStartElement();
    checkForm();
    if (!entered)
        return false;
    if (m_xml.name() == QLatin1String(m_root))
        return true;
    m_broken = true;
    problem(L"The root element is <" + m_xml.name().toString().toStdWString() + L">, not <" +
            QString::fromLatin1(m_root).toStdWString() + L">.");
    return false;
}

bool XmlFile::nextElement()
{
    const bool found = m_xml.readNextStartElement();
    checkForm();
    return found;
}

void XmlFile::skip()
{
    m_xml.skipCurrentElement();
    checkForm();
}

std::optional<std::wstring> XmlFile::optionalAttribute(const char* name) const
{
    const QXmlStreamAttributes attributes = m_xml.attributes();
    if (!attributes.hasAttribute(QLatin1String(name)))
        return std::nullopt;
    return attributes.value(QLatin1String(name)).toString().toStdWString();
}

std::wstring XmlFile::attribute(const char* name) const
{
    return optionalAttribute(name).value_or(std::wstring());
}

std::wstring XmlFile::text()
{
    const QString text = m_xml.readElementText(QXmlStreamReader::SkipChildElements);
    checkForm();
    return text.simplified().toStdWString();
}

} // namespace Vu
