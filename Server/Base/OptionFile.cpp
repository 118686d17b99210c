#include "Server/Base/OptionFile.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <unistd.h>

namespace Vs {

namespace fs = boost::filesystem;

namespace {

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t\r");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool isName(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
        return c > ' ' && c < 127 && c != '=' && c != '"' && c != '#';
    });
}

bool isValue(std::string_view text)
{
    std::vector<std::wstring> texts;
    if (text.empty() || text.front() == '"')
        return OptionFile::unquoted(text, texts);
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return c > ' ' && c < 127 && c != '"'; });
}

[[noreturn]] void failed(const fs::path& file, const std::string& what)
{
    throw Exception("The settings in " + file.string() + " cannot be " + what + ": " + std::strerror(errno) +
                    '.');
}

} // namespace

OptionFile::Values OptionFile::read(const fs::path& file)
{
    Values values;
    errno = 0;
    std::ifstream stream(file.c_str(), std::ios::binary);
    if (!stream) {
        if (errno == ENOENT)
            return values;
        failed(file, "read");
    }
    size_t number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        const std::string_view text = trimmed(line);
        if (text.empty() || text.front() == '#')
            continue;
        const size_t equals = text.find('=');
        const std::string_view name = trimmed(text.substr(0, equals));
        const std::string_view value =
            equals == std::string_view::npos ? std::string_view() : trimmed(text.substr(equals + 1));
        if (equals == std::string_view::npos || !isName(name) || !isValue(value))
            throw Exception(file.string() + ':' + std::to_string(number) +
                            ": this is no setting; the defaults are used.");
        values.insert_or_assign(std::string(name), std::string(value));
    }
    if (stream.bad())
        failed(file, "read");
    return values;
}

void OptionFile::write(const fs::path& file, const Values& values)
{
    std::string content = "# Written by Quillet.\n";
    for (const auto& [name, value] : values)
        content += name + " = " + value + '\n';

    const std::string temporary = file.string() + ".new";
    const int handle = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (handle < 0)
        failed(file, "written");
    size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = ::write(handle, content.data() + done, content.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            break;
        done += static_cast<size_t>(count);
    }
    const bool written = done == content.size() && fdatasync(handle) == 0;
    const int cause = errno;
    close(handle);
    if (!written || std::rename(temporary.c_str(), file.c_str()) != 0) {
        errno = written ? errno : cause;
        failed(file, "written");
    }
}

std::string OptionFile::quoted(std::wstring_view text)
{
    std::string result = "\"";
    for (const char character : Strings::narrow(text)) {
        if (character == '\n') {
            result += "\\n";
        } else if (character == '\r') {
            result += "\\r";
        } else {
            if (character == '"' || character == '\\')
                result += '\\';
            result += character;
        }
    }
    return result + '"';
}

bool OptionFile::unquoted(std::string_view value, std::vector<std::wstring>& texts)
{
    texts.clear();
    for (size_t at = 0; at < value.size(); ++at) {
        if (value[at] == ' ')
            continue;
        if (value[at] != '"')
            return false;
        std::string text;
        for (++at; at < value.size() && value[at] != '"'; ++at) {
            char character = value[at];
            if (character == '\\') {
                if (++at == value.size())
                    return false;
                character = value[at] == 'n' ? '\n' : value[at] == 'r' ? '\r' : value[at];
            }
            text.push_back(character);
        }
        if (at >= value.size())
            return false;
        texts.push_back(Strings::widen(text));
    }
    return true;
}

} // namespace Vs
