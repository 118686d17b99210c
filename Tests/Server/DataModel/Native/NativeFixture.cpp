#include "Tests/Server/DataModel/Native/NativeFixture.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/DocumentMgr.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <iterator>
#include <zip.h>

using namespace Vs;

std::string NativeTest::message() const
{
    return Strings::narrow(status.toString());
}

testing::AssertionResult NativeTest::oneMessage(const std::wstring& path, const std::string& text) const
{
    const std::string told = message();
    const std::string name = boost::filesystem::path(path).filename().string();
    if (status.isError() && std::count(told.begin(), told.end(), '\n') == 0 &&
        told.find(name) != std::string::npos && told.find(text) != std::string::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "told: \"" << told << "\" where \"" << text << "\" of " << name << " was expected";
}

Asset* NativeTest::madeAsset()
{
    status.clear();
    Asset* asset = newAsset();
    ModelBuilder builder(asset);
    builder.box(10, 20, 30, {GkMatrix3d(), L"Größe \"1\"", Colour{1, 0, 0, 1}}, status);
    builder.cylinder(5, 40, {GkMatrix3d::translation({50, 0, 0}), L"", std::nullopt}, status);
    EXPECT_TRUE(status.isOk()) << message();
    return asset;
}

bool NativeTest::saveAs(Document* document, const std::wstring& path)
{
    status.clear();
    const bool saved = document->saveAs(path, status);
    EXPECT_EQ(saved, status.isOk()) << message();
    return saved;
}

bool NativeTest::save(Document* document)
{
    status.clear();
    const bool saved = document->save(status);
    EXPECT_EQ(saved, status.isOk()) << message();
    return saved;
}

Document* NativeTest::reopen(Document* document)
{
    const std::wstring path = document->path();
    DocumentMgr::get()->close(document);
    Document* opened = open(path);
    EXPECT_NE(opened, nullptr) << message();
    return opened;
}

std::wstring NativeTest::savedFile(const std::string& name)
{
    Document* document = madeAsset()->document();
    EXPECT_TRUE(saveAs(document, scratch(name))) << message();
    DocumentMgr::get()->close(document);
    return scratch(name);
}

size_t NativeTest::filesInFolder() const
{
    using boost::filesystem::directory_iterator;
    return static_cast<size_t>(std::distance(directory_iterator(folder.path()), directory_iterator()));
}

void writePackage(const std::wstring& path, const std::vector<Entry>& entries)
{
    boost::filesystem::remove(path);
    int error = 0;
    zip_t* zip = zip_open(Strings::narrow(path).c_str(), ZIP_CREATE, &error);
    ASSERT_NE(zip, nullptr) << error;
    for (const Entry& entry : entries) {
        zip_source_t* source = zip_source_buffer(zip, entry.content.data(), entry.content.size(), 0);
        const zip_int64_t index = zip_file_add(zip, entry.name.c_str(), source, ZIP_FL_ENC_UTF_8);
        ASSERT_GE(index, 0) << zip_strerror(zip);
        zip_set_file_compression(zip, zip_uint64_t(index), entry.packed ? ZIP_CM_DEFLATE : ZIP_CM_STORE, 0);
    }
    ASSERT_EQ(zip_close(zip), 0) << zip_strerror(zip);
}

std::vector<Entry> readPackage(const std::wstring& path)
{
    std::vector<Entry> entries;
    int error = 0;
    zip_t* zip = zip_open(Strings::narrow(path).c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    EXPECT_NE(zip, nullptr) << error;
    const zip_uint64_t count = zip ? zip_uint64_t(zip_get_num_entries(zip, 0)) : 0;
    for (zip_uint64_t i = 0; i < count; ++i) {
        zip_stat_t info;
        EXPECT_EQ(zip_stat_index(zip, i, 0, &info), 0);
        Entry entry{info.name, std::string(info.size, '\0'), info.comp_method != ZIP_CM_STORE};
        zip_file_t* file = zip_fopen_index(zip, i, 0);
        EXPECT_EQ(zip_fread(file, entry.content.data(), info.size), static_cast<zip_int64_t>(info.size));
        // The checksum is compared only at the end.
        char beyond;
        EXPECT_EQ(zip_fread(file, &beyond, 1), 0) << zip_file_strerror(file);
        zip_fclose(file);
        entries.push_back(std::move(entry));
    }
    if (zip)
        zip_discard(zip);
    return entries;
}
