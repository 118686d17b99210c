#include "Server/Base/Python/VirtualEnvironment.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <Python.h>
#include <cstdlib>
#include <map>

namespace fs = boost::filesystem;

namespace Vs::Python {

namespace {

/// The lines `name = value` of the file that describes an environment; none if it can't be read.
std::map<std::string, std::string> described(const fs::path& file)
{
    std::map<std::string, std::string> values;
    fs::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        if (const size_t equals = line.find('='); equals != std::string::npos)
            values[boost::trim_copy(line.substr(0, equals))] = boost::trim_copy(line.substr(equals + 1));
    return values;
}

/// A number of the form 3.11.2, or with more behind it, belongs to this Python.
bool isThisVersion(const std::string& version)
{
    const std::string wanted = std::to_string(PY_MAJOR_VERSION) + '.' + std::to_string(PY_MINOR_VERSION);
    return version == wanted || version.starts_with(wanted + '.');
}

} // namespace

std::string activeEnvironment(const std::string& interpreter)
{
    const char* const active = std::getenv("VIRTUAL_ENV");
    if (!active || !*active)
        return {};
    const fs::path folder(active);
    const fs::path own = folder / "bin" / "python3";
    const auto values = described(folder / "pyvenv.cfg");
    const auto value = [&](const char* name) {
        const auto found = values.find(name);
        return found == values.end() ? std::string() : found->second;
    };
    // The tools that make environments use one of these names for the version.
    const std::string version = value("version").empty() ? value("version_info") : value("version");
    boost::system::error_code error;
    std::wstring why;
    if (values.empty() || !fs::exists(own, error))
        why = L"it is not a virtual environment";
    else if (!isThisVersion(version))
        why = L"it is for Python " + Strings::fromBytes(version) + L", and scripts run in Python " +
              std::to_wstring(PY_MAJOR_VERSION) + L'.' + std::to_wstring(PY_MINOR_VERSION);
    else if (!fs::equivalent(own, interpreter, error))
        why = L"it was made by another Python than " + Strings::fromBytes(interpreter);
    if (why.empty())
        return own.string();
    warn(L"Scripts don't use VIRTUAL_ENV, " + Strings::fromBytes(folder.string()) + L": " + why + L'.');
    return {};
}

} // namespace Vs::Python
