// STEP files whose parts are read by several processes: the model is the same as with a single process, and
// whatever happens to one of the processes, the file can still be read.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/DamagedParts.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Exchange/ForeignImport.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/Exchange/Worker.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Support/RealData.h"

#include <boost/algorithm/string.hpp>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

using namespace Vs;

namespace {

/// Several copies of a file's data in one file, each with its own numbers, and with parts that say which copy
/// they are.
std::string copies(const std::string& file, int count)
{
    const size_t begin = file.find("DATA;") + 5, end = file.find("ENDSEC;", begin);
    const std::string data = file.substr(begin, end - begin);
    const std::regex number("#([0-9]+)|'(Red box)'");
    int largest = 0;
    std::vector<std::string> pieces; // Between the numbers, and these.
    std::vector<int> numbers;
    size_t at = 0;
    for (std::sregex_iterator each(data.begin(), data.end(), number), none; each != none; ++each) {
        const bool isName = (*each)[2].matched;
        pieces.push_back(data.substr(at, size_t(each->position()) - at));
        at = size_t(each->position() + each->length());
        numbers.push_back(isName ? 0 : std::stoi((*each)[1]));
        largest = std::max(largest, numbers.back());
    }
    std::string all = file.substr(0, begin);
    for (int i = 0; i < count; ++i) {
        for (size_t k = 0; k < pieces.size(); ++k)
            all += pieces[k] + (numbers[k] == 0 ? "'Red box " + std::to_string(i) + '\''
                                                : '#' + std::to_string(numbers[k] + i * largest));
        all += data.substr(at);
    }
    return all + file.substr(end);
}

std::vector<pid_t> childrenOf(pid_t process)
{
    std::vector<pid_t> children;
    std::error_code error;
    const std::filesystem::directory_iterator threads("/proc/" + std::to_string(process) + "/task", error),
        none;
    for (auto thread = threads; !error && thread != none; thread.increment(error)) {
        std::ifstream file(thread->path() / "children");
        for (pid_t child; file >> child;)
            children.push_back(child);
    }
    return children;
}

/// The same file with its statements in another order, spaced further apart and with other numbers.
std::string rewritten(const std::string& file)
{
    const size_t begin = file.find("DATA;") + 5, end = file.rfind("ENDSEC;");
    std::vector<std::string> statements;
    std::string data = file.substr(begin, end - begin);
    boost::split(statements, data, boost::is_any_of(";"));
    std::reverse(statements.begin(), statements.end());
    std::string text = file.substr(0, begin);
    for (const std::string& statement : statements)
        if (!boost::trim_copy(statement).empty())
            text += "\n" +
                    std::regex_replace(std::regex_replace(statement, std::regex("#([0-9]+)"), "#4$010"),
                                       std::regex(","), " ,\r\n ") +
                    " /* as is */ ;";
    return text + '\n' + file.substr(end);
}

void forgetPieces()
{
    std::filesystem::remove_all(Exchange::importCache().pieces());
}

size_t keptPieces()
{
    const std::filesystem::directory_iterator all(Exchange::importCache().pieces());
    return static_cast<size_t>(std::distance(begin(all), end(all)));
}

/// The processes that read shares for this program's workers.
std::vector<pid_t> readers()
{
    std::vector<pid_t> all;
    for (const pid_t worker : childrenOf(getpid()))
        for (const pid_t divider : childrenOf(worker))
            for (const pid_t reader : childrenOf(divider))
                all.push_back(reader);
    return all;
}

} // namespace

class SharesTest : public DataModelTest
{
protected:
    SharesTest()
    {
        EXPECT_TRUE(save(boxAndCylinder(), scratch("whole.stp")));
        whole = contentOf(scratch("whole.stp"));
    }
    ~SharesTest() override { unsetenv("QUILLET_SHARES"); }

    /// A file with that name and text, which no cache has seen.
    std::wstring fresh(const std::string& name, const std::string& text)
    {
        const auto place = folder.path() / std::to_string(++files);
        std::filesystem::create_directory(place.string());
        std::ofstream((place / name).string(), std::ios::binary) << text << std::string(size_t(files), '\n');
        return (place / name).wstring();
    }
    /// What users see of the file, and the messages about it.
    std::string seen(const std::string& name, const std::string& text, const char* shares)
    {
        setenv("QUILLET_SHARES", shares, 1);
        const std::wstring path = fresh(name, text);
        Document* const document = open(path);
        std::string all =
            boost::replace_all_copy(Strings::narrow(status.toString()), Strings::narrow(path), name);
        if (!document)
            return all;
        const Asset& asset = *document->activeAsset();
        all += '\n' + digestOf(asset) + std::to_string(trianglesOf(asset));
        DocumentMgr::get()->close(document);
        return all;
    }
    void expectSame(const std::string& name, const std::string& text)
    {
        SCOPED_TRACE(name);
        forgetPieces();
        EXPECT_EQ(seen(name, text, "always"), seen(name, text, "never"));
    }

    /// Reads a file by shares, and does something to the running readers, that many times.
    std::shared_ptr<const ModelFile> readWith(const std::string& text, int times,
                                              const std::function<void(pid_t)>& harm, size_t& met)
    {
        setenv("QUILLET_SHARES", "always", 1);
        forgetPieces();
        Exchange::ForeignImport import(fresh("many.stp", text));
        Exchange::ForeignImport* imports[] = {&import};
        std::set<pid_t> known;
        Exchange::ForeignImport::run(imports, Exchange::importCache(), [&](double, const std::wstring&) {
            for (const pid_t reader : readers())
                if (known.insert(reader).second && times-- > 0)
                    harm(reader);
            return true;
        });
        met = known.size();
        status = import.status();
        return import.model();
    }

    std::string whole;
    int files = 0;
};

TEST_F(SharesTest, AFileIsTheSameModelByBothRoads)
{
    expectSame("whole.stp", whole);
    const std::string many = copies(whole, 8);
    expectSame("many.stp", many);
    // Names may contain whatever looks like the file's own syntax.
    expectSame("names.stp", boost::replace_all_copy(many, "'Red box 5'", "'it''s #12=(;) \"x'"));
    expectSame("comments.stp", boost::replace_all_copy(many, "= PLANE(", "/* #1=; ' */=PLANE ("));
    // One that lacks something is damaged either way.
    expectSame("lacks.stp", boost::replace_first_copy(many, "= PLANE(", "= PLANET("));
    expectSame("refers.stp", std::regex_replace(many, std::regex("(VERTEX_POINT\\('',#)[0-9]+"),
                                                "$01999999999", std::regex_constants::format_first_only));
    expectSame("twice.stp", boost::replace_first_copy(many, "DATA;", "DATA;\n#1=DIRECTION('',(0.,0.,1.));"));
    expectSame("cut.stp", many.substr(0, many.size() / 2));
}

TEST_F(SharesTest, RealFilesAreTheSameModelByBothRoads)
{
    SKIP_WITHOUT_REAL_DATA();
    for (const char* name :
         {"as1-oc-214.stp", "as1-tu-203.stp", "mayo_332.stp", "red_cube_blue_cylinder.step",
          "dm1-id-214_inch.stp", "nist_ctc_02_asme1_ap242-e2.stp", "planes_100faces.stp",
          "asm_board_pic_ap214.step"})
        expectSame(name, contentOf(TestSupport::realDataFolder() / name));
}

TEST_F(SharesTest, ReadersThatAreKilledOrStoppedAreReplaced)
{
    const std::string many = copies(whole, 120);
    size_t met = 0;
    const auto parts = [](const ModelFile& model) { return model.tree().bodies.size(); };
    const auto sound = readWith(many, 0, {}, met);
    ASSERT_NE(sound, nullptr) << Strings::narrow(status.toString());
    EXPECT_GE(met, 2u);
    for (const int signal : {SIGKILL, SIGSTOP}) {
        const auto model = readWith(
            many, 2, [&](pid_t reader) { kill(reader, signal); }, met);
        ASSERT_NE(model, nullptr) << Strings::narrow(status.toString());
        EXPECT_EQ(parts(*model), parts(*sound));
        EXPECT_EQ(Strings::narrow(status.toString()), "");
        EXPECT_GE(met, 3u);
    }
}

TEST_F(SharesTest, MemoryThatRunsOutAnywhereIsToldAsTheCause)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the memory of a sanitised worker isn't limited";
#endif
    setenv("QUILLET_SHARES", "never", 1);
    const std::string file = Strings::toBytes(fresh("many.stp", copies(whole, 40)));
    const std::string model = Strings::toBytes(scratch("out.model"));
    int read = 0, exhausted = 0;
    for (uint64_t megabytes = 40; megabytes <= 120 && read < 2; megabytes += 4) {
        Exchange::WorkerLimits limits;
        limits.memory = megabytes << 20;
        Exchange::Worker worker(Exchange::workerOf(Exchange::Format::Step), {"import", "step", file, model},
                                limits);
        Exchange::Worker* workers[] = {&worker};
        Exchange::Worker::run(workers, {});
        std::filesystem::remove(model);
        read += worker.end() == Exchange::Worker::End::Done;
        exhausted += worker.end() == Exchange::Worker::End::Exhausted;
        EXPECT_EQ(worker.fault().empty(), worker.end() == Exchange::Worker::End::Done);
        EXPECT_TRUE(worker.end() == Exchange::Worker::End::Done ||
                    worker.end() == Exchange::Worker::End::Exhausted)
            << megabytes << " MB: " << worker.fault();
    }
    EXPECT_GE(read, 1);
    EXPECT_GE(exhausted, 10);
}

TEST_F(SharesTest, PartsThatAreTheSameInAnotherFileAreNotReadAgain)
{
    const std::string file = copies(whole, 3);
    forgetPieces();
    size_t known = keptPieces();
    const std::string seenFirst = seen("parts.stp", file, "always");
    EXPECT_GT(keptPieces(), known);
    known = keptPieces();
    const std::string again = rewritten(file);
    EXPECT_EQ(seen("again.stp", again, "always"), seen("again.stp", again, "never"));
    EXPECT_EQ(keptPieces(), known);
    const std::string renamed = boost::replace_first_copy(file, "PRODUCT('Red box 1'", "PRODUCT('Blue'");
    EXPECT_NE(renamed, file);
    EXPECT_EQ(seen("renamed.stp", renamed, "always"), seen("renamed.stp", renamed, "never"));
    EXPECT_EQ(keptPieces(), known);

    // Everything that a part consists of distinguishes it from others, and causes it to be read.
    const std::pair<const char*, const char*> changes[] = {
        {"(CARTESIAN_POINT\\('',\\(10\\.,0\\.,)0", "$011"},
        {"(CYLINDRICAL_SURFACE\\('',#[0-9]+,)5", "$016"},
        {"(CIRCLE\\('',#[0-9]+,)5", "$014"},
        {"PLANE\\('", "PLANE('name"},
        {"(\\.T\\.)(\\);\\s*#[0-9]+ = FACE_BOUND)", ".F.$2"}};
    for (const auto& [from, to] : changes) {
        SCOPED_TRACE(from);
        const std::string changed =
            std::regex_replace(file, std::regex(from), to, std::regex_constants::format_first_only);
        ASSERT_NE(changed, file);
        known = keptPieces();
        EXPECT_EQ(seen("changed.stp", changed, "always"), seen("changed.stp", changed, "never"));
        EXPECT_EQ(keptPieces(), known + 1);
    }
    // Units and tolerances belong to all.
    for (const auto& [from, to] : {std::pair(".MILLI.", ".CENTI."), std::pair("1.E-07", "1.E-06")}) {
        const std::string changed = boost::replace_all_copy(file, from, to);
        known = keptPieces();
        EXPECT_EQ(seen("changed.stp", changed, "always"), seen("changed.stp", changed, "never"));
        EXPECT_EQ(keptPieces(), known + 2) << from;
    }

    // One that the disk has damaged is read again.
    for (const auto& each : std::filesystem::directory_iterator(Exchange::importCache().pieces())) {
        std::string bytes = contentOf(each.path().string());
        bytes[bytes.size() / 2] ^= 1;
        overwrite(each.path().string(), bytes);
    }
    EXPECT_EQ(seen("parts.stp", file, "always"), seenFirst);
}
