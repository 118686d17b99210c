#include "Tests/Server/DataModel/Recovery/VolatileDisk.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

ino_t inodeOf(const std::string& path)
{
    struct stat state = {};
    return lstat(path.c_str(), &state) == 0 ? state.st_ino : 0;
}

std::string pathOf(int descriptor)
{
    std::error_code error;
    return fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error).string();
}

// Like the program's: for this user only.
void makeFolders(const std::string& path)
{
    const mode_t before = umask(077);
    std::error_code ignored;
    fs::create_directories(path, ignored);
    umask(before);
}

std::string parentOf(const std::string& path)
{
    return fs::path(path).parent_path().string();
}

} // namespace

VolatileDisk::VolatileDisk(fs::path folder, fs::path notes)
    : m_folder(std::move(folder)), m_notes(std::move(notes))
{
    fs::remove_all(m_notes);
    fs::create_directories(m_notes);
    std::error_code error;
    note("there\t" + m_folder.string());
    for (const auto& entry : fs::recursive_directory_iterator(m_folder, error))
        if (entry.is_directory())
            note("there\t" + entry.path().string());
}

bool VolatileDisk::isWatched(const std::string& path) const
{
    return path.starts_with(m_folder.string());
}

// In one call, so that a process that is killed leaves whole lines.
void VolatileDisk::note(const std::string& line) const
{
    const int log = open((m_notes / "log").c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    const std::string whole = line + '\n';
    static_cast<void>(!write(log, whole.data(), whole.size()));
    close(log);
}

ino_t VolatileDisk::hold(const std::string& path) const
{
    const ino_t inode = inodeOf(path);
    std::error_code ignored;
    if (inode != 0 && fs::is_regular_file(path, ignored))
        fs::create_hard_link(path, m_notes / std::to_string(inode), ignored);
    return inode;
}

void VolatileDisk::before(const std::string& path) const
{
    note("name\t" + path + '\t' + std::to_string(hold(path)));
    for (std::string folder = parentOf(path); isWatched(folder); folder = parentOf(folder))
        note("folder\t" + folder);
}

void VolatileDisk::opened(const std::string& path, bool existed) const
{
    if (!isWatched(path) || fs::is_directory(path))
        return;
    const ino_t inode = hold(path);
    if (existed)
        return;
    note("name\t" + path + "\t0");
    for (std::string folder = parentOf(path); isWatched(folder); folder = parentOf(folder))
        note("folder\t" + folder);
    note("change\t" + path + '\t' + std::to_string(inode));
    note("content\t" + std::to_string(inode) + "\t0");
}

void VolatileDisk::flushed(int descriptor) const
{
    const std::string path = pathOf(descriptor);
    struct stat state = {};
    if (fstat(descriptor, &state) != 0)
        return;
    if (S_ISDIR(state.st_mode)) {
        note("flush\t" + path);
        for (const auto& entry : fs::directory_iterator(path))
            if (entry.is_directory())
                note("there\t" + entry.path().string());
    } else if (isWatched(path))
        note("content\t" + std::to_string(state.st_ino) + '\t' + std::to_string(state.st_size));
}

void VolatileDisk::renaming(const std::string& from, const std::string& to) const
{
    if (!isWatched(from) && !isWatched(to))
        return;
    before(from);
    before(to);
    note("change\t" + to + '\t' + std::to_string(inodeOf(from)) + '\t' + from + "\t0");
}

void VolatileDisk::removing(const std::string& path) const
{
    if (!isWatched(path) || fs::is_directory(path))
        return;
    before(path);
    note("change\t" + path + "\t0");
}

VolatileDisk::State VolatileDisk::read() const
{
    State state;
    std::set<std::string> there;
    std::ifstream log(m_notes / "log");
    for (std::string line; std::getline(log, line);) {
        std::istringstream fields(line);
        std::string what, path, value;
        std::getline(fields, what, '\t');
        std::getline(fields, path, '\t');
        std::getline(fields, value, '\t');
        if (what == "there") {
            there.insert(path);
            state.folders.erase(path);
        } else if (what == "name") {
            state.names.try_emplace(path, std::stoull(value));
        } else if (what == "folder" && !there.contains(path)) {
            state.folders.insert(path);
        } else if (what == "content") {
            state.contents[std::stoull(path)] = std::stoll(value);
        } else if (what == "change") {
            Change change{{{path, std::stoull(value)}}, {false}};
            std::string other, otherValue;
            if (std::getline(fields, other, '\t') && std::getline(fields, otherValue, '\t')) {
                change.names.emplace_back(other, std::stoull(otherValue));
                change.onDisk.push_back(false);
            }
            state.changes.push_back(std::move(change));
        } else if (what == "flush") {
            for (Change& change : state.changes)
                for (size_t i = 0; i < change.names.size(); ++i)
                    change.onDisk[i] = change.onDisk[i] || parentOf(change.names[i].first) == path;
        }
    }
    return state;
}

void VolatileDisk::restoreNames(const State& state, uint32_t seed) const
{
    std::mt19937 random(seed);
    std::map<std::string, ino_t> names = state.names;
    for (const Change& change : state.changes) {
        const bool flushed =
            std::find(change.onDisk.begin(), change.onDisk.end(), false) == change.onDisk.end();
        if (flushed || random() % 2 == 0)
            for (const auto& [path, inode] : change.names)
                names[path] = inode;
    }
    std::error_code ignored;
    for (const auto& [path, inode] : names) {
        if (inodeOf(path) == inode)
            continue;
        fs::remove(path, ignored);
        if (inode != 0) {
            makeFolders(parentOf(path));
            fs::create_hard_link(m_notes / std::to_string(inode), path, ignored);
        }
    }
    for (const std::string& folder : state.folders)
        if (random() % 2 == 0)
            fs::remove_all(folder, ignored);
}

void VolatileDisk::lose(uint32_t seed) const
{
    const State state = read();
    for (const auto& [inode, size] : state.contents) {
        const std::string file = (m_notes / std::to_string(inode)).string();
        std::error_code error;
        if (fs::file_size(file, error) > static_cast<uintmax_t>(size) && !error)
            static_cast<void>(!truncate(file.c_str(), size));
    }
    restoreNames(state, seed);
}
