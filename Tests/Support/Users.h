#pragma once

#include <boost/filesystem/path.hpp>

#include <functional>
#include <optional>
#include <string>

namespace TestSupport {

/// Users that nobody is and whom nothing belongs to.
constexpr unsigned kSomebody = 65534;
constexpr unsigned kAnother = 65533;

/// What the function answers in a process of its own that belongs to that user and to no group but the one of
/// the same number. False as well if it throws or crashes, or if the process may not change its user.
bool asUser(unsigned user, const std::function<bool()>& function);

/// Whether the tests are root's, who alone may be others.
bool mayBeOthers();

/// A folder that every user may look into, as those of a test aren't; removed with everything in it at the
/// end.
class OpenFolder
{
public:
    OpenFolder();
    ~OpenFolder();
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    const boost::filesystem::path& path() const { return m_path; }

private:
    boost::filesystem::path m_path;
};

/// Sets a variable of the environment, or takes it away, until its end.
class Variable
{
public:
    Variable(std::string name, const std::optional<std::string>& value);
    ~Variable();
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const std::string m_name;
    std::optional<std::string> m_before;
};

} // namespace TestSupport

/// Leaves the running test, as skipped and with a notice, where it can't be another user.
#define SKIP_UNLESS_ROOT()                                                                                   \
    if (!TestSupport::mayBeOthers())                                                                         \
    GTEST_SKIP() << "NOTICE: only root can try what other users may do"
