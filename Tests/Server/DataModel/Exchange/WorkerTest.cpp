#include "Server/DataModel/Exchange/Worker.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Exchange/ForeignImport.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Tests/Support/Process.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/wait.h>

using namespace Vs;
using namespace Vs::Exchange;

namespace {

// An ASCII STL file of many triangles that share no corner.
std::string manyTriangles(int count)
{
    std::ostringstream text;
    text << "solid many\n";
    for (int i = 0; i < count; ++i)
        text << "facet normal 0 0 1\nouter loop\nvertex " << i << " 0 0\nvertex " << i << ".5 0 0\nvertex "
             << i << " 1 0\nendloop\nendfacet\n";
    text << "endsolid many\n";
    return text.str();
}

size_t openDescriptors()
{
    return size_t(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

class WorkerTest : public testing::Test
{
protected:
    /// Reads `manyTriangles` in a separate worker.
    void run(Worker& worker, const Worker::Watch& watch = {})
    {
        Worker* workers[] = {&worker};
        Worker::run(workers, watch);
    }
    std::vector<std::string> arguments(int triangles)
    {
        return {"import", "stl", folder.write("many.stl", manyTriangles(triangles)).string(),
                (folder.path() / "out.model").string()};
    }

    TestSupport::ScratchFolder folder;
};

} // namespace

TEST_F(WorkerTest, DoesItsWorkAndSaysSo)
{
    Worker worker(workerOf(Format::Stl), arguments(100), {});
    run(worker);
    EXPECT_EQ(worker.end(), Worker::End::Done) << worker.fault();
    EXPECT_TRUE(std::filesystem::exists((folder.path() / "out.model").string()));
}

TEST_F(WorkerTest, IsEndedWhenItMakesNoProgressOrTakesTooLong)
{
    using std::chrono::milliseconds;
    Worker stalled(workerOf(Format::Stl), arguments(200'000), {milliseconds(1), milliseconds(1'000'000), 0});
    run(stalled);
    EXPECT_EQ(stalled.end(), Worker::End::Stalled);
    EXPECT_NE(stalled.fault().find("without progress"), std::string::npos) << stalled.fault();

    // However much processor time it got.
    const milliseconds never(1'000'000);
    Worker starved(workerOf(Format::Stl), arguments(200'000), {never, never, 0, milliseconds(1)});
    run(starved);
    EXPECT_EQ(starved.end(), Worker::End::Stalled);
    EXPECT_NE(starved.fault().find("without progress"), std::string::npos) << starved.fault();

    Worker slow(workerOf(Format::Stl), arguments(200'000), {milliseconds(1'000'000), milliseconds(1), 0});
    run(slow);
    EXPECT_EQ(slow.end(), Worker::End::Stalled);
    EXPECT_NE(slow.fault().find("was ended after"), std::string::npos) << slow.fault();
}

TEST_F(WorkerTest, IsToldApartWhenItOutgrowsItsMemory)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the memory of a sanitised worker isn't limited";
#endif
    WorkerLimits limits;
    limits.memory = 1 << 20;
    Worker worker(workerOf(Format::Stl), arguments(200'000), limits);
    run(worker);
    EXPECT_EQ(worker.end(), Worker::End::Exhausted) << worker.fault();
    EXPECT_NE(worker.fault().find("memory"), std::string::npos);
}

TEST_F(WorkerTest, WrongArgumentsAreAFaultOfTheWorker)
{
    Worker worker(workerOf(Format::Stl), {"dance"}, {});
    run(worker);
    EXPECT_EQ(worker.end(), Worker::End::Crashed);
    EXPECT_NE(worker.fault().find("exit code 2"), std::string::npos) << worker.fault();
}

TEST_F(WorkerTest, LeavesNoChildAndNoDescriptorBehindHoweverItEnds)
{
    const size_t before = openDescriptors();
    std::vector<std::unique_ptr<Worker>> owned;
    std::vector<Worker*> workers;
    for (int i = 0; i < 6; ++i) {
        owned.push_back(std::make_unique<Worker>(
            workerOf(Format::Stl), i % 2 ? arguments(50'000) : std::vector<std::string>{"dance"},
            WorkerLimits{}));
        workers.push_back(owned.back().get());
    }
    int questions = 0;
    Worker::run(workers, [&] { return ++questions < 4; });
    for (const Worker* worker : workers)
        EXPECT_NE(worker->end(), Worker::End::Running);
    owned.clear();
    EXPECT_LE(openDescriptors(), before);
    Worker::waitForDeparting();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(WorkerTest, AnExpectedFileIsReadOnceAndOneThatNobodyAskedForLeavesNothing)
{
    const std::string cacheFolder = (folder.path() / "cache").string();
    ImportCache cache(cacheFolder);
    const std::wstring asked = folder.write("asked.stl", manyTriangles(20'000)).wstring();
    const std::wstring forgotten = folder.write("forgotten.stl", manyTriangles(30'000)).wstring();
    const size_t before = openDescriptors();
    ForeignImport::expect(forgotten, cache);
    ForeignImport::expect(asked, cache);
    {
        ForeignImport import(asked);
        ForeignImport* imports[] = {&import};
        EXPECT_TRUE(ForeignImport::run(imports, cache, {}));
        EXPECT_NE(import.model(), nullptr) << Strings::narrow(import.status().toString());
    }
    Worker::waitForDeparting();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_LE(openDescriptors(), before);
    const auto entries = std::filesystem::directory_iterator(cacheFolder);
    EXPECT_EQ(std::distance(entries, {}), 1);
}

TEST_F(WorkerTest, AFileSeenBeforeNeedsNoWorkerAndKeepsItsWarnings)
{
    ImportCache cache((folder.path() / "cache").string());
    const std::wstring path =
        folder
            .write("odd.stl",
                   "solid odd\nfacet normal 0 0 1 outer loop vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 "
                   "endloop endfacet\nfacet normal 0 0 1 outer loop vertex nan 0 0 vertex 1 0 0 vertex "
                   "0 1 0 endloop endfacet\nendsolid odd\n")
            .wstring();
    std::vector<std::wstring> warnings;
    for (const bool expectWorker : {true, false}) {
        ForeignImport import(path);
        ForeignImport* imports[] = {&import};
        bool asked = false;
        ForeignImport::run(imports, cache, [&](double, const std::wstring&) { return asked = true; });
        ASSERT_NE(import.model(), nullptr) << Strings::narrow(import.status().toString());
        EXPECT_EQ(asked, expectWorker);
        ASSERT_EQ(import.status().warnings().size(), 1u);
        warnings.push_back(import.status().warnings().front());
    }
    EXPECT_EQ(warnings[0], warnings[1]);
    EXPECT_NE(warnings[0].find(L"impossible coordinates"), std::wstring::npos);
}
