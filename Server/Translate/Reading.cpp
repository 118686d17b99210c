#include "Server/Translate/Reading.h"

#include <filesystem>

namespace Vs::Translate {

std::string stemOf(const std::string& path)
{
    return std::filesystem::path(path).stem().string();
}

} // namespace Vs::Translate
