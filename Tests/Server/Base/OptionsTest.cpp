#include "Server/Base/OptionGroup.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/RunOptions.h"
#include "Server/Base/Task.h"
#include "Server/Base/Warning.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <gtest/gtest.h>
#include <limits>

namespace {

namespace fs = boost::filesystem;

class ProbeOptions : public Vs::Implements<ProbeOptions, Vs::OptionGroup>
{
public:
    ProbeOptions() : Implements("Probe") {}
    Vs::Option<bool> flag{*this, "flag", true};
    Vs::Option<int> count{*this, "count", 7};
    Vs::Option<double> size{*this, "size", 0.5};
    Vs::Option<std::wstring> text{*this, "text", L"default"};
    Vs::Option<std::vector<std::wstring>> list{*this, "list", {}};
};

class OptionsTest : public testing::Test
{
protected:
    OptionsTest() { Vs::PathInfo::profileDirectory(folder.path()); }
    ~OptionsTest() override
    {
        Vs::OptionGroup::saveLater(nullptr);
        Vs::RunOptions::clear();
        Vs::PathInfo::profileDirectory({});
    }
    fs::path file() const { return Vs::PathInfo::optionsDirectory() / "Probe.json"; }
    std::string content() const
    {
        fs::ifstream stream(file(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

    TestSupport::ScratchFolder folder;
};

TEST_F(OptionsTest, KeepWhateverWasSetForTheNextRun)
{
    // The last one is a raw byte of a file name, as a recent document may have.
    const std::wstring odd = L"say \"hi\"\\\nnext = #ünï \U0001F600" + std::wstring(1, wchar_t(0xDCFF));
    {
        ProbeOptions options;
        EXPECT_TRUE(options.flag());
        options.flag(false);
        options.count(-12);
        options.size(1.0 / 3);
        options.text(odd);
        options.list({L"a b", L"", odd});
    }
    ProbeOptions again;
    EXPECT_FALSE(again.flag());
    EXPECT_EQ(again.count(), -12);
    EXPECT_EQ(again.size(), 1.0 / 3);
    EXPECT_EQ(again.text(), odd);
    EXPECT_EQ(again.list(), (std::vector<std::wstring>{L"a b", L"", odd}));
    again.reset();
    EXPECT_EQ(again.count(), 7);
    EXPECT_EQ(ProbeOptions().count(), 7);
}

TEST_F(OptionsTest, KeepNumbersToTheLastDigit)
{
    Vs::PathInfo::profileDirectory(folder.path() / "Müller");
    for (const double size : {0.1, -1e-300, 1e300, 4.9e-324, 9007199254740993.0, 3.0}) {
        ProbeOptions().size(size);
        EXPECT_EQ(ProbeOptions().size(), size);
    }
    for (const int count : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 0}) {
        ProbeOptions().count(count);
        EXPECT_EQ(ProbeOptions().count(), count);
    }
    ProbeOptions().size(std::numeric_limits<double>::infinity());
    EXPECT_EQ(ProbeOptions().size(), 0.5);
    EXPECT_EQ(fs::status(file()).permissions(), fs::owner_read | fs::owner_write);
}

TEST_F(OptionsTest, OfARunAreAsTheyWereInTheNext)
{
    {
        ProbeOptions options;
        options.count(3);
        options.text(L"the user's");
    }
    Vs::RunOptions::add("Probe", "t");
    Vs::RunOptions::add("Probe", "list");
    {
        ProbeOptions options;
        EXPECT_EQ(options.text(), L"the user's");
        options.text(L"a script's");
        options.list({L"a script's"});
        EXPECT_EQ(options.text(), L"a script's");
        options.count(4);
        EXPECT_EQ(options.text(), L"a script's");
    }
    Vs::RunOptions::clear();
    ProbeOptions options;
    EXPECT_EQ(options.count(), 4);
    EXPECT_EQ(options.text(), L"the user's");
    EXPECT_TRUE(options.list().empty());
}

TEST_F(OptionsTest, ThatKeepTheirDefaultsWriteNoFile)
{
    ProbeOptions options;
    options.flag(true);
    options.count(7);
    options.save();
    EXPECT_FALSE(fs::exists(file()));
}

TEST_F(OptionsTest, TellTheirSitesOfRealChangesOnly)
{
    struct Site : Vs::OptionEventSite
    {
        std::string log;
        void optionChanged(Vs::OptionEvent* event) override { log += event->name() + ' '; }
    } site;
    ProbeOptions options;
    options.subscribe(&site);
    options.count(7);
    options.count(8);
    options.count(8);
    options.text(L"x");
    options.reset();
    options.unsubscribe(&site);
    EXPECT_EQ(site.log, "count text count text ");
}

TEST_F(OptionsTest, AreDefaultsWithOneWarningWhenTheFileIsBroken)
{
    std::vector<std::wstring> warnings;
    const Vs::WarningHandler handler([&](const std::wstring& text) { warnings.push_back(text); });
    for (const std::string& broken :
         {std::string("{\"count\": 3,\n nonsense}"), std::string("{\"text\": \"open\n"), std::string("[3]"),
          std::string(), std::string("\0\1\2\xff\xfe", 5), std::string("{\"count\": 3} 4"),
          "{\"count\": " + std::string(300000, '['),
          "{\"count\": " + std::string(300000, '[') + std::string(300000, ']') + '}'}) {
        fs::ofstream(file(), std::ios::binary) << broken;
        warnings.clear();
        ProbeOptions options;
        EXPECT_EQ(options.count(), 7);
        EXPECT_EQ(options.text(), L"default");
        ASSERT_EQ(warnings.size(), 1u);
        EXPECT_NE(warnings[0].find(L"Probe.json"), std::wstring::npos);
    }
    fs::ofstream(file()) << "{\n  \"count\": 3\n  \"text\": \"a\"\n}\n";
    EXPECT_EQ(ProbeOptions().count(), 7);
    EXPECT_NE(warnings.back().find(L"Probe.json:3: "), std::wstring::npos) << "The line of the missing comma";
    // What a user wrote by hand isn't lost when the next option is set.
    ProbeOptions options;
    options.count(9);
    EXPECT_TRUE(fs::exists(file().string() + ".broken"));
    EXPECT_EQ(ProbeOptions().count(), 9);
}

TEST_F(OptionsTest, OfAnotherTypeThanAskedForAreTheDefaultAndOfNoUseAreKept)
{
    fs::ofstream(file()) << R"({"count": "many", "size": null, "flag": 1, "text": ["a", "b"],
                                "list": ["a", 2], "future": {"deep": [5]}})";
    ProbeOptions options;
    EXPECT_EQ(options.count(), 7);
    EXPECT_EQ(options.size(), 0.5);
    EXPECT_TRUE(options.flag());
    EXPECT_EQ(options.text(), L"default");
    EXPECT_TRUE(options.list().empty());
    options.count(1);
    EXPECT_NE(content().find("\"deep\""), std::string::npos);
    for (const char* count : {"1e99", "2147483648", "1.5"}) {
        fs::ofstream(file()) << "{\"count\": " << count << '}';
        EXPECT_EQ(ProbeOptions().count(), 7) << count;
    }
}

TEST_F(OptionsTest, AreWrittenOnceForManyChangesWhereAQueueIsThere)
{
    Vs::Tasks tasks;
    Vs::OptionGroup::saveLater(&tasks);
    {
        ProbeOptions options;
        options.count(1);
        options.count(2);
        EXPECT_EQ(tasks.size(), 1u);
        EXPECT_FALSE(fs::exists(file()));
        tasks.flush();
        EXPECT_NE(content().find("\"count\": 2"), std::string::npos);
        options.count(3);
    }
    EXPECT_NE(content().find("\"count\": 3"), std::string::npos);
    tasks.flush(); // The queued write finds its group gone.
}

TEST_F(OptionsTest, OfAnInterludeGoWithItAndAreNeverWritten)
{
    ProbeOptions options;
    options.count(1);
    const std::string before = content();
    {
        const Vs::OptionGroup::Interlude interlude(options);
        options.count(2);
        options.flag(false);
        EXPECT_EQ(options.count(), 2);
        const Vs::OptionGroup::Interlude inner(options);
        options.size(8);
        EXPECT_EQ(content(), before) << "a run that ends here leaves the user's options as they were";
    }
    EXPECT_EQ(options.count(), 1);
    EXPECT_TRUE(options.flag());
    EXPECT_EQ(content(), before) << "with no word of what was never set";
    options.flag(false);
    EXPECT_NE(content(), before);
}

TEST_F(OptionsTest, ThatCannotBeWrittenStayInForceAndWarn)
{
    std::vector<std::wstring> warnings;
    const Vs::WarningHandler handler([&](const std::wstring& text) { warnings.push_back(text); });
    ProbeOptions options;
    EXPECT_EQ(options.count(), 7);
    fs::create_directories(file() / "in the way");
    options.count(4);
    EXPECT_EQ(options.count(), 4);
    EXPECT_EQ(warnings.size(), 1u);
}

} // namespace
