// Every system call of a save is made to fail once, and the machine to crash there: what is on the disk is
// the whole old file or the whole new one, and never anything else.

#include "Server/Base/Strings.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Native/FileCalls.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/xattr.h>

using namespace Vs;
using Native::FileCalls;
namespace fs = boost::filesystem;

namespace {

/// Makes one call fail, all calls transfer less, or all calls from one on do nothing.
class Faults : public FileCalls
{
public:
    enum class Kind {
        None,
        Error,  ///< The call fails with `code`.
        Death,  ///< The call and all later ones fail and do nothing.
        Shorter ///< Every transfer moves only a part of what was requested, and every other one is
                ///< interrupted.
    };

    Faults() { replace(this); }
    ~Faults() override { replace(nullptr); }

    void arm(Kind kind, int call, int code)
    {
        m_kind = kind;
        m_call = call;
        m_code = code;
        calls = 0;
        failed.clear();
    }
    int calls = 0;
    std::string failed; ///< The name of the call that failed.

    int open(const char* path, int flags, mode_t mode) override
    {
        return fails("open") ? -1 : FileCalls::open(path, flags, mode);
    }
    ssize_t write(int descriptor, const void* data, size_t size) override
    {
        return fails("write") ? -1 : FileCalls::write(descriptor, data, shortened(size));
    }
    ssize_t writeAt(int descriptor, const void* data, size_t size, off_t place) override
    {
        return fails("writeAt") ? -1 : FileCalls::writeAt(descriptor, data, shortened(size), place);
    }
    ssize_t copy(int from, off_t* place, int to, size_t size) override
    {
        return fails("copy") ? -1 : FileCalls::copy(from, place, to, shortened(size));
    }
    int lock(int descriptor) override { return fails("lock") ? -1 : FileCalls::lock(descriptor); }
    int giveTo(int descriptor, uid_t owner, gid_t group) override
    {
        return fails("giveTo") ? -1 : FileCalls::giveTo(descriptor, owner, group);
    }
    int rights(int descriptor, mode_t mode) override
    {
        return fails("rights") ? -1 : FileCalls::rights(descriptor, mode);
    }
    ssize_t attributes(const char* path, char* names, size_t size) override
    {
        return fails("attributes") ? -1 : FileCalls::attributes(path, names, size);
    }
    ssize_t attribute(const char* path, const char* name, void* value, size_t size) override
    {
        return fails("attribute") ? -1 : FileCalls::attribute(path, name, value, size);
    }
    int giveAttribute(int descriptor, const char* name, const void* value, size_t size) override
    {
        return fails("giveAttribute") ? -1 : FileCalls::giveAttribute(descriptor, name, value, size);
    }
    int flush(int descriptor) override { return fails("flush") ? -1 : FileCalls::flush(descriptor); }
    int close(int descriptor) override
    {
        // A descriptor is closed whatever the result; also a process that dies closes its own.
        const int result = FileCalls::close(descriptor);
        return fails("close") ? -1 : result;
    }
    int rename(const char* from, const char* to) override
    {
        return fails("rename") ? -1 : FileCalls::rename(from, to);
    }
    int remove(const char* path) override { return fails("remove") ? -1 : FileCalls::remove(path); }

private:
    bool fails(const char* name)
    {
        const int number = calls++;
        const bool hit = (m_kind == Kind::Error && number == m_call) ||
                         (m_kind == Kind::Death && number >= m_call) ||
                         (m_kind == Kind::Shorter && number % 2 == 1 && std::string(name) != "close");
        if (hit) {
            if (failed.empty())
                failed = name;
            errno = m_kind == Kind::Shorter ? EINTR : m_code;
        }
        return hit;
    }
    size_t shortened(size_t size) const
    {
        return m_kind == Kind::Shorter ? std::max<size_t>(size / 2, std::min<size_t>(size, 4096)) : size;
    }

    Kind m_kind = Kind::None;
    int m_call = 0;
    int m_code = 0;
};

} // namespace

class SaveFaultsTest : public NativeTest
{
protected:
    /// Two assets, one unchanged since it was saved and the other changed: a save copies and writes.
    Document* changedDocument()
    {
        Document* document = madeAsset()->document();
        Asset* other = Asset::create(document, L"Other", document->activeAsset()->assetType());
        ModelBuilder(other).sphere(4, {}, status);
        EXPECT_TRUE(saveAs(document, scratch("faults.tdsn"))) << message();
        labelled = setxattr(Strings::narrow(document->path()).c_str(), "user.note", "kept", 4, 0) == 0;
        ModelBuilder(other).box(1, 2, 3, {}, status);
        return document;
    }
    std::string digest(Document* document)
    {
        return digestOf(*document->asset(0)) + digestOf(*document->asset(1));
    }
    std::string digestOfFile(const std::wstring& path)
    {
        fs::copy_file(path, scratch("look.tdsn"), fs::copy_option::overwrite_if_exists);
        Document* document = open(scratch("look.tdsn"));
        EXPECT_NE(document, nullptr) << message();
        const std::string found = document ? digest(document) : std::string();
        DocumentMgr::get()->close(document);
        fs::remove(scratch("look.tdsn"));
        return found;
    }

    bool labelled = false; ///< The file system supports attributes.
};

TEST_F(SaveFaultsTest, AtEveryCallTheOldFileStaysWholeOrTheNewOneIsComplete)
{
    Faults faults;
    for (const auto& [kind, code] :
         {std::pair(Faults::Kind::Error, ENOSPC), {Faults::Kind::Error, EIO}, {Faults::Kind::Death, EIO}}) {
        Document* document = changedDocument();
        std::string old = contentOf(document->path());
        const std::string changed = digest(document);
        int call = 0, survived = 0;
        std::string failedCalls;
        for (bool hit = true; hit; ++call) {
            faults.arm(kind, call, code);
            const bool saved = save(document);
            hit = !faults.failed.empty();
            failedCalls += faults.failed + " ";
            const std::string where = "call " + std::to_string(call) + " (" + faults.failed + ")";
            faults.arm(Faults::Kind::None, 0, 0);
            EXPECT_EQ(digest(document), changed) << where;
            EXPECT_EQ(document->isDirty(false), !saved) << where;
            if (!saved) {
                EXPECT_TRUE(oneMessage(document->path(), std::strerror(code))) << where;
            }
            if (contentOf(document->path()) != old) {
                EXPECT_EQ(digestOfFile(document->path()), changed) << where;
                // From here on the old content is lost, so it is restored for the next call.
                if (hit) {
                    DocumentMgr::get()->close(document);
                    document = changedDocument();
                    old = contentOf(document->path());
                    EXPECT_EQ(digest(document), changed);
                }
            } else {
                EXPECT_FALSE(saved) << where;
                ++survived;
            }
            if (kind == Faults::Kind::Error) {
                EXPECT_EQ(filesInFolder(), 1u) << where;
            }
        }
        EXPECT_GT(survived, 6) << failedCalls;
        for (const char* name : {"open ", "write ", "writeAt ", "copy ", "attributes ", "flush ", "rename "})
            EXPECT_NE(failedCalls.find(name), std::string::npos) << failedCalls;
        for (const char* name : {"attribute ", "giveAttribute "})
            EXPECT_EQ(failedCalls.find(name) != std::string::npos, labelled) << failedCalls;
        // What was left behind was removed by the last save, which nothing hindered.
        EXPECT_EQ(filesInFolder(), 1u);
        DocumentMgr::get()->close(document);
    }
}

TEST_F(SaveFaultsTest, InterruptedAndShortCallsAreGoneOnWith)
{
    Faults faults;
    Document* document = changedDocument();
    const std::string changed = digest(document);
    faults.arm(Faults::Kind::Shorter, 0, 0);
    EXPECT_TRUE(save(document)) << message();
    EXPECT_EQ(faults.failed, "lock");
    faults.arm(Faults::Kind::None, 0, 0);
    EXPECT_EQ(digestOfFile(document->path()), changed);
}
