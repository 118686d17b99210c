// The exact data of native files: who made them, and what becomes of them.

#include "Server/Base/OwnFiles.h"
#include "Server/Base/Strings.h"
#include "Server/Body/BodyProperties.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/Exchange/KnownData.h"
#include "Server/DataModel/Model/ModelBody.h"
#include "Tests/Server/DataModel/Model/CraftedModel.h"
#include "Tests/Server/DataModel/Native/NativeFixture.h"

#include <boost/filesystem/operations.hpp>

#include <filesystem>
#include <sys/stat.h>

using namespace Vs;
using namespace Vs::Exchange;

namespace {

/// How many exact data a worker has rewritten so far.
size_t renewed()
{
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(importCache().folder()))
        count += entry.path().filename().string().ends_with("-exact.model");
    return count;
}

} // namespace

class ExactDataTest : public NativeTest
{
protected:
    /// No data are known any more.
    static void forgetAll() { std::filesystem::remove(importCache().folder() + "/known-data"); }
    void closeAll()
    {
        while (DocumentMgr::get()->documents() > 0)
            DocumentMgr::get()->close(DocumentMgr::get()->document(0u));
    }
    /// The same file with another model in place of the only one.
    void replaceModel(const std::wstring& path, CraftedModel& model, const std::wstring& target)
    {
        std::vector<Entry> entries = readPackage(path);
        entries[1].content = model.sealed();
        // An unknown hash counts as none.
        std::string& manifest = entries[2].content;
        manifest.replace(manifest.find("\"hash\": \"") + 9, 16, std::string(16, '0'));
        writePackage(target, entries);
    }
    /// As an export at another refinement does.
    static void meshAnew(const Body& body)
    {
        try {
            cast<ModelBody>(&body)->meshFor({.surfaceDeviation = 0.01f});
        } catch (const std::runtime_error&) {
            // It doesn't matter here that it is refused.
        }
    }
    /// The first message when asking a body of a file for its volume; empty if there was none.
    std::string faultOf(const std::wstring& path, bool ahead = false)
    {
        Document* document = open(path);
        if (!document)
            return "not opened: " + message();
        if (ahead)
            EditRequest::expectSoon(*document->activeAsset());
        const Component& part = *document->activeAsset()->components()->children.at(0);
        status.clear();
        bodyProperties(*part.body, status);
        std::string fault = message();
        status.clear();
        bodyProperties(*part.body, status);
        EXPECT_EQ(message(), fault) << "what can't be read is another time something else";
        closeAll();
        return fault;
    }
};

TEST_F(ExactDataTest, WhatThisUserSavedIsReadAsItIsAndWhatAnybodyMadeByAWorkerFirst)
{
    const std::wstring path = savedFile("own.tdsn");
    const size_t before = renewed();
    EXPECT_EQ(faultOf(path), "");
    EXPECT_EQ(renewed(), before);

    forgetAll();
    const std::string digest = digestOf(*open(path)->activeAsset());
    closeAll();
    EXPECT_EQ(renewed(), before + 1);
    // Once for the same data, whatever file they are in.
    boost::filesystem::copy_file(path, scratch("copy.tdsn"));
    EXPECT_EQ(digestOf(*open(scratch("copy.tdsn"))->activeAsset()), digest);
    EXPECT_EQ(renewed(), before + 1);

    // What is changed is the user's own from then on; the same data saved again keep their origin.
    Document* document = DocumentMgr::get()->document(0u);
    ASSERT_TRUE(saveAs(document, scratch("unchanged.tdsn"))) << message();
    ModelBuilder(document->activeAsset()).box(1, 2, 3, {}, status);
    ASSERT_TRUE(saveAs(document, scratch("changed.tdsn"))) << message();
    closeAll();
    EXPECT_EQ(faultOf(scratch("changed.tdsn")), "");
    EXPECT_EQ(renewed(), before + 1);
    std::filesystem::remove_all(importCache().folder());
    OwnFiles::makeFolder(importCache().folder());
    EXPECT_EQ(faultOf(scratch("unchanged.tdsn")), "");
    EXPECT_EQ(renewed(), 1u);
}

TEST_F(ExactDataTest, DamagedOnesAreToldOfEachTimeAndTheNextFileIsReadAsEver)
{
    const std::wstring path = savedFile("sound.tdsn");
    const double volume = volumeOf(*open(path)->activeAsset());
    closeAll();
    CraftedModel crafted(readPackage(path)[1].content);
    const size_t middle = (crafted.kernelPlace() + crafted.size()) / 2;
    for (size_t at = middle; at < middle + 400; at += 4)
        crafted.set<uint32_t>(at, 0x7fffffff);
    replaceModel(path, crafted, scratch("damaged.tdsn"));
    const std::string fault = faultOf(scratch("damaged.tdsn"));
    EXPECT_NE(fault.find("can't be measured: its exact data are damaged: "), std::string::npos) << fault;
    EXPECT_EQ(faultOf(scratch("damaged.tdsn"), true), fault) << "read ahead";
    EditRequest::expectSoon(*open(path)->activeAsset());
    closeAll(); // While it is read.
    EXPECT_EQ(faultOf(path, true), "");
    EXPECT_EQ(volumeOf(*open(path)->activeAsset()), volume);
}

// Finite, and still not what the kernel can compute with: one of its algorithms crashed on it.
TEST_F(ExactDataTest, ANumberBeyondAllBoundsInThemEndsNothingWhenTheyAreMeshed)
{
    const std::wstring path = savedFile("sound.tdsn");
    const std::string sound = readPackage(path)[1].content;
    const CraftedModel model(sound);
    int tried = 0;
    for (size_t at = model.kernelPlace(); at + sizeof(double) <= sound.size(); ++at) {
        if (model.get<double>(at) != 20.0) // the width of the box
            continue;
        CraftedModel crafted(sound);
        crafted.set<double>(at, 3e178);
        replaceModel(path, crafted, scratch("far.tdsn"));
        if (Document* document = open(scratch("far.tdsn")))
            meshAnew(*document->activeAsset()->components()->children.at(0)->body);
        closeAll();
        ++tried;
    }
    EXPECT_GT(tried, 10);
}

TEST(KnownData, AreKeptForTheirUserAloneAndTheOldestForgotten)
{
    const TestSupport::ScratchFolder folder;
    const std::string path = (folder.path() / "known").string();
    KnownData known(path);
    const DataDigest first = digestOf("first"), second = digestOf("second");
    EXPECT_NE(first, second);
    EXPECT_FALSE(known.contains(first));
    known.add(first);
    known.add(first);
    EXPECT_EQ(std::filesystem::file_size(path), first.size());
    EXPECT_TRUE(KnownData(path).contains(first));
    EXPECT_FALSE(KnownData(path).contains(second));
    struct stat info = {};
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);

    TestSupport::overwrite(path, TestSupport::contentOf(path) + std::string(32 * 20'000, 'x') + "half a one");
    known.add(second);
    EXPECT_TRUE(known.contains(second));
    EXPECT_FALSE(known.contains(first));
    EXPECT_LT(std::filesystem::file_size(path), 32u * 15'000);

    KnownData nowhere("/nowhere/known");
    nowhere.add(first);
    EXPECT_FALSE(nowhere.contains(first));
}
