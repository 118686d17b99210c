#include "Server/DataModel/NewFile.h"

#include "Server/Base/Descriptor.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs::Exchange {

namespace {

[[noreturn]] void fail()
{
    throw std::runtime_error(std::strerror(errno));
}

} // namespace

NewFile::NewFile(const std::wstring& path) : m_path(Strings::toBytes(path))
{
    std::error_code error;
    if (std::filesystem::is_directory(m_path, error))
        throw std::runtime_error("there is a folder of that name");
    // A link stays a link: what it points to is replaced.
    const auto target = std::filesystem::weakly_canonical(m_path, error);
    if (!error)
        m_path = target.string();
    // Short enough for any folder, however long the file's own name is.
    m_scratch = (std::filesystem::path(m_path).parent_path() / ".quillet-XXXXXX").string();
    const Descriptor made(mkostemp(m_scratch.data(), O_CLOEXEC));
    if (!made)
        fail();
    m_unfinished.emplace(m_scratch);
    // A file that is replaced keeps its permissions; a new one gets the default ones.
    struct stat old;
    fchmod(made.get(), stat(m_path.c_str(), &old) == 0 ? old.st_mode & 07777 : permissionsOfNewFiles());
}

NewFile::~NewFile()
{
    if (!m_scratch.empty())
        unlink(m_scratch.c_str());
}

void NewFile::commit()
{
    require(!m_scratch.empty(), "a file is put in its place once");
    // The rename may reach the disk before the content does. Where an old file would be lost by that, the
    // content goes first; a new file has nothing to lose, and needn't wait for the disk.
    if (access(m_path.c_str(), F_OK) == 0) {
        const Descriptor written(open(m_scratch.c_str(), O_RDONLY | O_CLOEXEC));
        if (!written || fsync(written.get()) != 0)
            fail();
    }
    if (rename(m_scratch.c_str(), m_path.c_str()) != 0)
        fail();
    m_unfinished.reset();
    m_scratch.clear();
}

} // namespace Vs::Exchange
