#pragma once

#include <boost/filesystem/path.hpp>

namespace Vs::Itemhub {

/// Held by the one run of the program that uploads an account's queue. Released with the process.
class QueueLock
{
public:
    explicit QueueLock(const boost::filesystem::path& folder);
    ~QueueLock();
    QueueLock(const QueueLock&) = delete;
    QueueLock& operator=(const QueueLock&) = delete;

    [[nodiscard]] bool isHeld() const { return m_file >= 0; }

private:
    int m_file;
};

} // namespace Vs::Itemhub
