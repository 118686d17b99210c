#include "Server/Base/Python/ScriptSource.h"

#include "Server/Base/Exception.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <cerrno>
#include <cstring>
#include <iterator>

namespace Vs::Python {

std::string readScript(const std::string& path)
{
    const boost::filesystem::path file(path);
    boost::system::error_code error;
    if (boost::filesystem::is_directory(file, error))
        throw Exception(path + ": The script is a folder.");
    errno = 0;
    boost::filesystem::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw Exception(path + ": The script cannot be read: " + std::strerror(errno) + '.');
    std::string code(std::istreambuf_iterator<char>(stream), {});
    if (code.find('\0') != std::string::npos)
        throw Exception(path + ": The file is not a Python script: it holds binary data.");
    return code;
}

} // namespace Vs::Python
