#include "Server/Itemhub/Private/QueueLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace Vs::Itemhub {

QueueLock::QueueLock(const boost::filesystem::path& folder)
    : m_file(open((folder / ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600))
{
    if (m_file >= 0 && flock(m_file, LOCK_EX | LOCK_NB) != 0)
        close(std::exchange(m_file, -1));
}

QueueLock::~QueueLock()
{
    if (m_file >= 0)
        close(m_file);
}

} // namespace Vs::Itemhub
