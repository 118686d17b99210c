#include "Server/DataModel/Exchange/FileKind.h"

#include "Server/Base/Strings.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vs::Exchange {

namespace {

// Whether `text` begins with `word`, in any case, after blanks and line ends.
bool beginsWith(std::string_view text, std::string_view word)
{
    while (!text.empty() && (std::isspace(static_cast<unsigned char>(text.front())) || text.front() == '\0'))
        text.remove_prefix(1);
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    return text.size() >= word.size() &&
           std::equal(word.begin(), word.end(), text.begin(),
                      [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

/// A line of an IGES file is 72 columns of text, the letter of its section and a number of seven digits.
bool isIgesLine(std::string_view line, std::string_view sections)
{
    const auto isOfNumber = [](unsigned char c) { return c == ' ' || std::isdigit(c); };
    return line.size() >= 80 && sections.find(line[72]) != std::string_view::npos &&
           std::all_of(line.begin() + 73, line.begin() + 80, isOfNumber);
}

// Of a damaged file, the first line may be unrecognizable.
bool isIges(std::string_view head)
{
    if (isIgesLine(head, "SBC"))
        return true;
    for (int other = 0; other < 3; ++other) {
        const size_t begin = head.find('\n');
        if (begin == head.npos)
            break;
        head.remove_prefix(begin + 1);
        const size_t end = head.find_first_of("\r\n");
        if (end == 80 && head[79] != ' ' && isIgesLine(head.substr(0, end), "SG"))
            return true;
    }
    return false;
}

bool isBinaryStl(std::string_view head, uint64_t size)
{
    uint32_t triangles;
    if (head.size() < 84)
        return false;
    std::memcpy(&triangles, head.data() + 80, sizeof triangles);
    return size == 84 + uint64_t(triangles) * 50;
}

// One JSON object with at least one of the members that a glTF file is made of; it may begin with any of
// them.
bool isGltf(std::string_view head)
{
    static constexpr std::string_view kMembers[] = {"\"asset\"",   "\"accessors\"", "\"bufferViews\"",
                                                    "\"buffers\"", "\"meshes\"",    "\"nodes\"",
                                                    "\"scene\"",   "\"scenes\""};
    return beginsWith(head, "{") && std::any_of(std::begin(kMembers), std::end(kMembers), [&](auto member) {
               return head.find(member) != std::string_view::npos;
           });
}

// An OBJ file has no mark of its own, but each of its lines begins with one of a few words.
bool isObj(std::string_view head)
{
    static constexpr std::string_view kWords[] = {"v", "vt", "vn", "vp", "f",      "o",      "g",
                                                  "s", "l",  "p",  "mg", "mtllib", "usemtl", "lod"};
    if (head.find('\0') != std::string_view::npos)
        return false;
    bool any = false;
    while (!head.empty()) {
        const size_t end = head.find('\n');
        std::string_view line = head.substr(0, end);
        // The last line may be truncated by the end of the bytes examined.
        if (end == std::string_view::npos && any)
            break;
        head.remove_prefix(end == std::string_view::npos ? head.size() : end + 1);
        const size_t begin = line.find_first_not_of(" \t\r");
        if (begin == std::string_view::npos || line[begin] == '#')
            continue;
        line.remove_prefix(begin);
        const std::string_view word = line.substr(0, line.find_first_of(" \t\r"));
        if (std::find(std::begin(kWords), std::end(kWords), word) == std::end(kWords))
            return false;
        any = true;
    }
    return any;
}

// Whether a file whose beginning is damaged has more of a STEP file than its name.
bool hasStepSections(std::string_view head)
{
    static constexpr std::string_view kMarks[] = {"HEADER;", "FILE_DESCRIPTION", "FILE_NAME", "FILE_SCHEMA",
                                                  "DATA;"};
    return std::ranges::any_of(
        kMarks, [&](std::string_view mark) { return head.find(mark) != std::string_view::npos; });
}

} // namespace

Format formatOfContent(std::string_view head, uint64_t size)
{
    if (beginsWith(head, "iso-10303-21"))
        return Format::Step;
    if (isBinaryStl(head, size))
        return Format::Stl;
    if (isIges(head))
        return Format::Iges;
    if (head.starts_with("DBRep_DrawableShape") ||
        head.find("CASCADE Topology V") != std::string_view::npos ||
        head.starts_with("Open CASCADE Topology V"))
        return Format::Brep;
    if (beginsWith(head, "solid"))
        return Format::Stl;
    if (head.starts_with("glTF"))
        return Format::Glb;
    if (beginsWith(head, "#vrml"))
        return Format::Vrml;
    if (isGltf(head))
        return Format::Gltf;
    if (isObj(head))
        return Format::Obj;
    return Format::Unknown;
}

Format recognise(const std::wstring& path, Status& status)
{
    const auto fault = [&](const std::wstring& text) {
        status.addError(L"\"" + path + L"\" " + text);
        return Format::Unknown;
    };
    // Without blocking: the name may be that of a pipe that nobody writes to.
    const int descriptor = open(Strings::toBytes(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return fault(errno == ENOENT ? L"doesn't exist."
                                     : L"can't be read: " + Strings::widen(std::strerror(errno)) + L".");
    struct stat info = {};
    char head[4096];
    const bool known = fstat(descriptor, &info) == 0;
    const ssize_t got = known && S_ISREG(info.st_mode) ? pread(descriptor, head, sizeof head, 0) : 0;
    const int readError = errno;
    close(descriptor);
    if (S_ISDIR(info.st_mode))
        return fault(L"is a folder, not a file.");
    if (!S_ISREG(info.st_mode))
        return fault(L"isn't an ordinary file.");
    if (got < 0)
        return fault(L"can't be read: " + Strings::widen(std::strerror(readError)) + L".");
    if (info.st_size == 0)
        return fault(L"is empty.");

    const Format named = formatOfName(path);
    const std::string_view begin(head, static_cast<size_t>(got));
    Format held = formatOfContent(begin, static_cast<uint64_t>(info.st_size));
    if (held == Format::Unknown && named == Format::Step && hasStepSections(begin))
        held = Format::Step; // Its reader looks for what is sound.
    if (held == Format::Unknown) {
        if (named == Format::Unknown)
            return fault(L"is of no kind that this program can open.");
        return fault(std::wstring(L"doesn't hold ") + nameOf(named) +
                     L" data, as its name says, nor any other known.");
    }
    if (named != Format::Unknown && named != held)
        return fault(L"is named " + suffixOf(path) + L" but holds " + nameOf(held) + L" data.");
    return held;
}

} // namespace Vs::Exchange
