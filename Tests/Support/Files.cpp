#include "Tests/Support/Files.h"

#include <boost/filesystem/fstream.hpp>

#include <iterator>

namespace fs = boost::filesystem;

std::string TestSupport::contentOf(const fs::path& file)
{
    fs::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void TestSupport::overwrite(const fs::path& file, const std::string& content)
{
    fs::ofstream(file, std::ios::binary) << content;
}
