#include "Server/Translate/ReplacedFile.h"

#include <sstream>

namespace Vs::Translate {

namespace {

/// A file system of one file. The kernel's own one has all others.
class OneFile : public OSD_FileSystem
{
public:
    OneFile(const std::string& path, std::string content)
        : m_path(path.c_str()), m_content(std::move(content))
    {
    }

    Standard_Boolean IsSupportedPath(const TCollection_AsciiString& path) const override
    {
        return path == m_path;
    }
    Standard_Boolean IsOpenIStream(const std::shared_ptr<std::istream>& stream) const override
    {
        return stream && dynamic_cast<std::stringbuf*>(stream->rdbuf());
    }
    Standard_Boolean IsOpenOStream(const std::shared_ptr<std::ostream>&) const override { return false; }
    std::shared_ptr<std::streambuf> OpenStreamBuffer(const TCollection_AsciiString&,
                                                     const std::ios_base::openmode, const int64_t place,
                                                     int64_t* size) override
    {
        auto buffer = std::make_shared<std::stringbuf>(m_content, std::ios_base::in);
        if (place > 0)
            buffer->pubseekpos(place, std::ios_base::in);
        if (size)
            *size = static_cast<int64_t>(m_content.size());
        return buffer;
    }

private:
    TCollection_AsciiString m_path;
    std::string m_content;
};

} // namespace

ReplacedFile::ReplacedFile(const std::string& path, std::string content)
    : m_system(new OneFile(path, std::move(content)))
{
    OSD_FileSystem::AddDefaultProtocol(m_system, true);
}

ReplacedFile::~ReplacedFile()
{
    OSD_FileSystem::RemoveDefaultProtocol(m_system);
}

} // namespace Vs::Translate
