#include "Server/DataModel/Exchange/ImportCache.h"

#include "Server/DataModel/Exchange/WorkerProtocol.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/operations.hpp>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

using namespace Vs;
using namespace Vs::Exchange;

namespace {

constexpr size_t kEntrySize = 10'000;

std::string newModel(ImportCache& cache)
{
    const std::string path = cache.scratchPath();
    ModelFileWriter writer(path);
    writer.writeIndex({}, {});
    writer.addKernelData(std::string(kEntrySize, 'x'));
    writer.finish();
    return path;
}

size_t filesIn(const boost::filesystem::path& folder)
{
    return size_t(std::distance(std::filesystem::directory_iterator(folder.string()), {}));
}

void makeOld(const boost::filesystem::path& path, int hours)
{
    std::filesystem::last_write_time(path.string(), std::filesystem::file_time_type::clock::now() -
                                                        std::chrono::hours(hours));
}

} // namespace

TEST(ImportCache, TheKeyFollowsTheContentAndTheNameAndNotTheFolder)
{
    const TestSupport::ScratchFolder folder, other;
    const auto key = [&](const std::string& name, const std::string& content, const char* format) {
        return ImportCache::keyOf(folder.write(name, content).string(), format);
    };
    EXPECT_EQ(key("a", "same", "step"), ImportCache::keyOf(other.write("a", "same").string(), "step"));
    // Parts that have no name get the file's.
    EXPECT_NE(key("a", "same", "step"), key("b", "same", "step"));
    EXPECT_NE(key("a", "bsame", "step"), key("ab", "same", "step"));
    EXPECT_NE(key("a", "same", "step"), key("a", "samf", "step"));
    EXPECT_NE(key("a", "same", "step"), key("a", "same", "iges"));
    EXPECT_EQ(ImportCache::keyOf((folder.path() / "missing").string(), "step"), std::nullopt);
}

TEST(ImportCache, TheKeyOfAFileFollowsTheOthersThatItDependsOn)
{
    const TestSupport::ScratchFolder folder, here, there;
    ImportCache cache(folder.path().string());
    const std::string at = here.path().string();
    EXPECT_EQ(cache.fullKey("key", at), "key");
    here.write("a", "red");
    cache.noteOthers("key", at, {at + "/a", at + "/b"});
    const std::string red = cache.fullKey("key", at);
    EXPECT_NE(red, "key");
    EXPECT_EQ(cache.fullKey("key", at), red);
    EXPECT_EQ(cache.fullKey("other", at), "other");
    // The same files elsewhere are the same, and the same file among others isn't.
    EXPECT_NE(cache.fullKey("key", there.path().string()), red);
    there.write("a", "red");
    EXPECT_EQ(cache.fullKey("key", there.path().string()), red);
    here.write("a", "blue");
    const std::string blue = cache.fullKey("key", at);
    EXPECT_NE(blue, red);
    here.write("b", "comes later");
    EXPECT_NE(cache.fullKey("key", at), blue);
}

// Opening a pipe would wait for ever, and a mapped file must not shrink.
TEST(ImportCache, TheKeyComesOfOrdinaryFilesAloneWhateverOthersDoWithThemMeanwhile)
{
    const TestSupport::ScratchFolder folder;
    const std::string pipe = (folder.path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {pipe, std::string("/dev/zero"), folder.path().string()})
        EXPECT_EQ(ImportCache::keyOf(path, "step"), std::nullopt) << path;
    ImportCache cache((folder.path() / "cache").string());
    cache.noteOthers("key", folder.path().string(), {pipe, "/dev/zero"});
    EXPECT_NE(cache.fullKey("key", folder.path().string()), "key");

    constexpr int kSize = 8 << 20;
    const std::string shrinking = folder.write("shrinking", std::string(kSize, 'x')).string();
    std::atomic<bool> done = false;
    std::thread other([&] {
        while (!done) {
            std::filesystem::resize_file(shrinking, 1);
            std::filesystem::resize_file(shrinking, kSize);
        }
    });
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(ImportCache::keyOf(shrinking, "step"));
    done = true;
    other.join();
}

TEST(ImportCache, IsForItsUserAlone)
{
    const TestSupport::ScratchFolder folder;
    const auto rights = [](const boost::filesystem::path& path) {
        struct stat info = {};
        EXPECT_EQ(stat(path.c_str(), &info), 0) << path;
        return info.st_mode & 0777;
    };
    const mode_t mask = umask(0);
    ImportCache cache((folder.path() / "new").string());
    EXPECT_EQ(rights(folder.path() / "new"), 0700u);
    cache.store("key", newModel(cache));
    EXPECT_EQ(rights(folder.path() / "new/key.model"), 0600u);
    cache.noteOthers("key", folder.path().string(), {"/a"});
    EXPECT_EQ(rights(folder.path() / "new/key.others"), 0600u);
    // One that an older program created with access for everybody.
    boost::filesystem::create_directory(folder.path() / "old");
    EXPECT_EQ(rights(folder.path() / "old"), 0777u);
    const ImportCache old((folder.path() / "old").string());
    EXPECT_EQ(rights(folder.path() / "old"), 0700u);
    umask(mask);
}

TEST(ImportCache, KeepsWhatWasStoredAndDropsWhatIsDamaged)
{
    const TestSupport::ScratchFolder folder;
    ImportCache cache(folder.path().string());
    EXPECT_EQ(cache.find("key"), nullptr);
    EXPECT_NE(cache.store("key", newModel(cache)), nullptr);
    EXPECT_NE(cache.find("key"), nullptr);
    EXPECT_EQ(filesIn(folder.path()), 1u);
    folder.write("key.model", "garbage");
    EXPECT_EQ(cache.find("key"), nullptr);
    EXPECT_EQ(filesIn(folder.path()), 0u);
}

TEST(ImportCache, DropsWhatWasNotUsedForLongestWhenItIsFull)
{
    const TestSupport::ScratchFolder folder;
    ImportCache cache(folder.path().string(), 3 * kEntrySize);
    for (const char* key : {"a", "b"})
        cache.store(key, newModel(cache));
    makeOld(folder.path() / "a.model", 2);
    makeOld(folder.path() / "b.model", 1);
    cache.find("a"); // used now, so that b is the oldest
    cache.store("c", newModel(cache));
    EXPECT_EQ(cache.find("b"), nullptr);
    EXPECT_NE(cache.find("a"), nullptr);
    EXPECT_NE(cache.find("c"), nullptr);

    // What is cached for parts counts as well.
    std::ofstream(cache.pieces() + "/one.piece") << std::string(kEntrySize, 'x');
    makeOld(cache.pieces() + "/one.piece", 3);
    cache.store("c", newModel(cache));
    EXPECT_EQ(filesIn(cache.pieces()), 0u);
    EXPECT_NE(cache.find("a"), nullptr);
    std::filesystem::remove(cache.pieces());

    // An entry above the limit is kept until another one is added.
    ImportCache small(folder.path().string(), 1);
    const auto held = small.store("d", newModel(small));
    EXPECT_NE(small.find("d"), nullptr);
    EXPECT_EQ(filesIn(folder.path()), 1u);
    small.store("e", newModel(small));
    EXPECT_EQ(held->kernelData().size(), kEntrySize);
}

TEST(ImportCache, ClearsAwayWhatADeadProgramLeft)
{
    const TestSupport::ScratchFolder folder;
    ImportCache cache(folder.path().string());
    makeOld(folder.write("1-1.part", "half"), 48);
    folder.write("2-1.part", "another program is writing this");
    cache.store("key", newModel(cache));
    EXPECT_EQ(filesIn(folder.path()), 2u);
}

TEST(WorkerMessages, ComeThroughInAnyPieces)
{
    const WorkerMessage sent[] = {{WorkerMessage::Kind::Progress, 0.25, "reading"},
                                  {WorkerMessage::Kind::Warning, 0, ""},
                                  {WorkerMessage::Kind::Error, 0, std::string(100'000, 'e')},
                                  {WorkerMessage::Kind::Done, 1, "Größe"}};
    std::string bytes;
    for (const WorkerMessage& message : sent)
        bytes += encode(message);
    for (const size_t piece : {size_t(1), size_t(7), bytes.size()}) {
        WorkerMessageReader reader;
        std::vector<WorkerMessage> received;
        for (size_t at = 0; at < bytes.size(); at += piece) {
            reader.add(std::string_view(bytes).substr(at, piece));
            while (auto message = reader.next())
                received.push_back(*message);
        }
        ASSERT_EQ(received.size(), std::size(sent));
        for (size_t i = 0; i < received.size(); ++i) {
            EXPECT_EQ(received[i].kind, sent[i].kind);
            EXPECT_EQ(received[i].fraction, sent[i].fraction);
            EXPECT_EQ(received[i].text, sent[i].text);
        }
    }
}

TEST(WorkerMessages, AFrameOfImpossibleLengthEndsTheTalk)
{
    for (const std::string& length : {std::string("\0\0\0\0", 4), std::string("\xff\xff\xff\xff", 4)}) {
        WorkerMessageReader reader;
        reader.add(length + std::string(50, 'x'));
        EXPECT_EQ(reader.next(), std::nullopt);
        EXPECT_TRUE(reader.broken());
    }
}
