#pragma once

#include <string>

namespace Vs {

/// Opens a library of this program that lies beside this one, because it takes long to load and isn't needed
/// in every run. Throws std::runtime_error.
class SiblingLibrary
{
public:
    /// Objects of a library may outlive any owner that could be named, so it stays open for good, unless
    /// nothing of it can remain in use.
    enum class Open { ForGood, WhileThisLives };

    explicit SiblingLibrary(const std::string& fileName, Open open = Open::ForGood);
    ~SiblingLibrary();
    SiblingLibrary(const SiblingLibrary&) = delete;
    SiblingLibrary& operator=(const SiblingLibrary&) = delete;

    template <class Function>
    Function function(const char* name) const
    {
        return reinterpret_cast<Function>(find(name));
    }

private:
    void* find(const char* name) const;

    std::string m_path;
    void* m_handle;
    Open m_open;
};

} // namespace Vs
