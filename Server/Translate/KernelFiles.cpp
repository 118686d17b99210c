#include "Server/Translate/KernelFiles.h"

#include "Server/Translate/Beside.h"

#include <algorithm>
#include <optional>
#include <sstream>

namespace Vs::Translate {

class KernelFiles::System : public OSD_FileSystem
{
public:
    explicit System(std::string path) : file(std::move(path)) {}

    /// The kernel's own file system takes the rest. Once taken, a file must be given something: that one is
    /// asked next.
    Standard_Boolean IsSupportedPath(const TCollection_AsciiString& path) const override
    {
        return isReplaced(path.ToCString()) || !liesBeside(file, path.ToCString());
    }
    Standard_Boolean IsOpenIStream(const std::shared_ptr<std::istream>& stream) const override
    {
        return stream && dynamic_cast<std::stringbuf*>(stream->rdbuf());
    }
    Standard_Boolean IsOpenOStream(const std::shared_ptr<std::ostream>&) const override { return false; }
    std::shared_ptr<std::streambuf> OpenStreamBuffer(const TCollection_AsciiString& path,
                                                     const std::ios_base::openmode, const int64_t place,
                                                     int64_t* size) override
    {
        const std::string name = path.ToCString();
        if (!isReplaced(name) && std::find(refused.begin(), refused.end(), name) == refused.end())
            refused.push_back(name);
        const std::string& content = isReplaced(name) ? *replacement : empty;
        auto buffer = std::make_shared<std::stringbuf>(content, std::ios_base::in);
        if (place > 0)
            buffer->pubseekpos(place, std::ios_base::in);
        if (size)
            *size = static_cast<int64_t>(content.size());
        return buffer;
    }

    const std::string file;
    std::string empty;
    std::optional<std::string> replacement;
    std::vector<std::string> refused;

private:
    bool isReplaced(const std::string& path) const { return replacement && path == file; }
};

KernelFiles::KernelFiles(std::string file) : m_system(new System(std::move(file)))
{
    OSD_FileSystem::AddDefaultProtocol(m_system, true);
}

KernelFiles::~KernelFiles()
{
    OSD_FileSystem::RemoveDefaultProtocol(m_system);
}

void KernelFiles::empty(std::string content)
{
    m_system->empty = std::move(content);
}

void KernelFiles::replace(std::string content)
{
    m_system->replacement = std::move(content);
}

const std::vector<std::string>& KernelFiles::refused() const
{
    return m_system->refused;
}

} // namespace Vs::Translate
