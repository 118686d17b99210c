#include "Server/Skyvault/Client/Dav/Leftovers.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"

#include <QUuid>

#include <boost/filesystem/operations.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Vs::Cloud {

namespace fs = boost::filesystem;

namespace {

/// Marks a note that is still being written: others leave it alone.
constexpr char kUnfinished = '.';

/// The lock is released with the file handle, and thus with its program. -1 if another one holds it.
int opened(const fs::path& file, int how)
{
    const int handle = ::open(file.c_str(), how | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (handle < 0 || ::flock(handle, LOCK_EX | LOCK_NB) == 0)
        return handle;
    ::close(handle);
    return -1;
}

std::vector<fs::path> notesIn(const fs::path& folder)
{
    std::vector<fs::path> notes;
    boost::system::error_code error;
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
        if (each->path().filename().string().front() != kUnfinished)
            notes.push_back(each->path());
    }
    return notes;
}

} // namespace

Leftovers::Note::~Note()
{
    if (m_handle >= 0)
        ::close(m_handle);
}

Leftovers::Note::Note(Note&& other) noexcept
    : m_file(std::move(other.m_file)), m_handle(std::exchange(other.m_handle, -1))
{
}

Leftovers::Note& Leftovers::Note::operator=(Note&& other) noexcept
{
    std::swap(m_file, other.m_file);
    std::swap(m_handle, other.m_handle);
    return *this;
}

void Leftovers::Note::drop()
{
    boost::system::error_code error;
    if (m_handle >= 0)
        fs::remove(m_file, error);
}

Leftovers::Note Leftovers::note(const std::string& path) const
try {
    if (m_folder.empty())
        return {};
    OwnFiles::makeFolder(m_folder);
    const std::string name = QUuid::createUuid().toString(QUuid::Id128).toStdString();
    const fs::path unfinished = m_folder / (kUnfinished + name), file = m_folder / name;
    Note made(file, opened(unfinished, O_CREAT | O_EXCL | O_RDWR));
    const bool isWritten = made.m_handle >= 0 &&
                           ::write(made.m_handle, path.data(), path.size()) == ssize_t(path.size()) &&
                           ::fsync(made.m_handle) == 0;
    boost::system::error_code error;
    if (isWritten)
        fs::rename(unfinished, file, error);
    if (isWritten && !error)
        return made;
    fs::remove(unfinished, error);
    return {};
} catch (const Exception&) {
    return {};
}

void Leftovers::clear(const std::function<bool(const std::string& path)>& remove) const
{
    if (m_folder.empty())
        return;
    for (const fs::path& file : notesIn(m_folder)) {
        Note left(file, opened(file, O_RDWR));
        const std::optional<std::string> path = left.m_handle >= 0 ? OwnFiles::read(file) : std::nullopt;
        if (path && remove(*path))
            left.drop();
    }
}

} // namespace Vs::Cloud
