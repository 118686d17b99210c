#pragma once

#include <string>

namespace Vs {

/// Opens a library of this program that stands beside this one, for good: what takes long to load and isn't
/// needed in every run. Throws std::runtime_error.
class SiblingLibrary
{
public:
    explicit SiblingLibrary(const std::string& fileName);

    template <class Function>
    Function function(const char* name) const
    {
        return reinterpret_cast<Function>(find(name));
    }

private:
    void* find(const char* name) const;

    std::string m_path;
    void* m_handle;
};

} // namespace Vs
