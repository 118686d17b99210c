#include "Server/Translate/Beside.h"

#include <cstdlib>
#include <filesystem>

namespace Vs::Translate {

namespace {

namespace fs = std::filesystem;

// A home folder with more files than that is not where models are kept.
constexpr size_t kMostFiles = 1000;

fs::path folderOf(const std::string& file)
{
    const fs::path folder = fs::path(file).parent_path();
    return folder.empty() ? "." : folder;
}

bool isWithin(const fs::path& folder, const fs::path& place)
{
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(folder, error);
    const fs::path relative = fs::weakly_canonical(place, error).lexically_relative(whole);
    return !error && !relative.empty() && *relative.begin() != "..";
}

} // namespace

bool liesBeside(const std::string& file, const std::string& other)
{
    return isWithin(folderOf(file), other);
}

std::vector<std::string> placesBeside(const std::string& file)
{
    const fs::path folder = folderOf(file);
    const char* home = std::getenv("HOME");
    if (!home || !*home || !isWithin(folder, home))
        return {folder};
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
        std::error_code ignored;
        if (files.size() < kMostFiles && each->path().filename().native().front() != '.' &&
            each->is_regular_file(ignored))
            files.push_back(each->path());
    }
    return files;
}

std::string refusalOf(const std::string& other)
{
    return "refers to a file outside of its own folder, " + other;
}

} // namespace Vs::Translate
