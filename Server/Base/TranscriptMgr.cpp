#include "Server/Base/TranscriptMgr.h"

#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/fstream.hpp>

#include <cerrno>
#include <cstring>

namespace Vs {

struct TranscriptMgr::File
{
    std::wstring path;
    boost::filesystem::ofstream stream;
};

void TranscriptMgr::Close::operator()(File* file) const
{
    delete file;
}

TranscriptMgr* TranscriptMgr::get()
{
    static auto* const manager = new TranscriptMgr;
    return manager;
}

bool TranscriptMgr::startRecording(const std::wstring& path, Status& status)
{
    endRecording();
    std::unique_ptr<File, Close> file(new File{path, {}});
    errno = 0;
    file->stream.open(boost::filesystem::path(path), std::ios::binary | std::ios::trunc);
    if (!file->stream) {
        status.addError(L"The transcript \"" + path + L"\" cannot be written: " +
                        Strings::widen(std::strerror(errno)) + L".");
        return false;
    }
    m_file = std::move(file);
    return true;
}

void TranscriptMgr::endRecording()
{
    m_file.reset();
}

void TranscriptMgr::write(const std::wstring& line)
{
    if (!m_file)
        return;
    errno = 0;
    m_file->stream << Strings::narrow(line) << '\n' << std::flush;
    if (m_file->stream)
        return;
    warn(L"The transcript \"" + m_file->path + L"\" ends here, since it cannot be written: " +
         Strings::widen(std::strerror(errno)) + L".");
    endRecording();
}

} // namespace Vs
