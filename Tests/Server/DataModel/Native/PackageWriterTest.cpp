#include "Server/DataModel/Native/PackageWriter.h"

#include "Server/DataModel/Native/Package.h"
#include "Server/DataModel/Native/ZipReader.h"
#include "Tests/Support/Process.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <zip.h>

using namespace Vs;
using namespace Vs::Native;

namespace {

/// Leaves a hole where bytes would be copied to, so that gigabytes cost nothing.
class Holes : public FileCalls
{
public:
    ssize_t copy(int, off_t* place, int to, size_t size) override
    {
        *place += static_cast<off_t>(size);
        return lseek(to, static_cast<off_t>(size), SEEK_CUR) < 0 ? -1 : static_cast<ssize_t>(size);
    }
};

} // namespace

TEST(PackageWriter, PartsBeyondFourGigabytesAreFoundAgain)
{
    const TestSupport::ScratchFolder folder;
    const std::string source = folder.write("source", "small").string(),
                      target = (folder.path() / "large.zip").string();
    constexpr uint64_t kLarge = (uint64_t(5) << 30) + 123;
    Holes holes;
    SafeFile file(target, holes);
    PackageWriter writer(file);
    const StoredPart part{FileMapping::open(source), 0, kLarge, 0, 0x12345678};
    const PackageWriter::Entry first = writer.addPart("large", part), second = writer.addPart("more", part);
    writer.add("behind", "found");
    writer.finish();
    file.commit();
    EXPECT_EQ(first.place % PackageWriter::kAlignment, 0u);
    EXPECT_EQ(second.place % PackageWriter::kAlignment, 0u);

    int error = 0;
    zip_t* zip = zip_open(target.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    ASSERT_NE(zip, nullptr) << error;
    for (const char* name : {"large", "more"}) {
        zip_stat_t info;
        ASSERT_EQ(zip_stat(zip, name, 0, &info), 0) << name;
        EXPECT_EQ(info.size, kLarge);
        EXPECT_EQ(info.crc, 0x12345678u);
    }
    zip_file_t* behind = zip_fopen(zip, "behind", 0);
    ASSERT_NE(behind, nullptr) << zip_strerror(zip);
    char content[16] = {};
    EXPECT_EQ(zip_fread(behind, content, sizeof content), 5);
    EXPECT_STREQ(content, "found");
    zip_fclose(behind);
    zip_discard(zip);
}

// An entry's claims are trusted until it is unpacked: nothing is behind these.
TEST(Package, EntriesThatUnpackedTakeMoreThanHalfOfTheMemoryTogetherAreRefused)
{
    constexpr uint64_t kSmall = 1 << 20, kRatio = 200, kMostOfOne = uint64_t(16) << 30;
    const uint64_t half = uint64_t(sysconf(_SC_PHYS_PAGES)) * uint64_t(sysconf(_SC_PAGE_SIZE)) / 2;
    if (half > kMostOfOne)
        GTEST_SKIP() << "NOTICE: no two entries could fill half of this computer's memory";
    const TestSupport::ScratchFolder folder;
    const std::string path = (folder.path() / "claims.zip").string();
    SafeFile file(path, FileCalls::current());
    PackageWriter writer(file);
    writer.add("small", std::string(kSmall, 's'));
    const uint64_t claimed = half - kSmall / 2;
    const std::string junk(half / kRatio + 2, '\xff');
    for (const char* name : {"large", "above"})
        writer.addPacked(name, {8, 0, junk.size(), *name == 'l' ? claimed : half + kRatio},
                         [&](const auto& take) { take(junk.data(), junk.size()); });
    writer.finish();
    file.commit();

    const auto fault = [](Package& package, const std::string& name) -> std::string {
        try {
            return package.unpack(name) ? "unpacked" : "";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    };
    const std::string kTooMuch = "more memory than there is";
    Package package(path);
    EXPECT_NE(fault(package, "above").find(kTooMuch), std::string::npos);
    EXPECT_EQ(fault(package, "small"), "unpacked");
    EXPECT_NE(fault(package, "large").find(kTooMuch), std::string::npos);
    Package anew(path);
    EXPECT_EQ(fault(anew, "large").find(kTooMuch), std::string::npos) << "by itself it would fit";
    EXPECT_NE(fault(anew, "large"), "unpacked");
}
