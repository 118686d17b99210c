#include "Server/Base/FolderName.h"

#include <algorithm>
#include <cctype>

namespace Vs {

std::string folderName(std::string text)
{
    std::replace_if(
        text.begin(), text.end(),
        [](unsigned char letter) { return !std::isalnum(letter) && letter != '.' && letter != '_'; }, '-');
    constexpr size_t kLongest = 60;
    text.resize(std::min(text.size(), kLongest));
    // Neither a hidden folder nor one that leads upwards.
    if (text.starts_with('.'))
        text.front() = '-';
    return text;
}

} // namespace Vs
