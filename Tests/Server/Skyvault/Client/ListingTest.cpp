#include "Server/Skyvault/Client/Dav/KeepOther.h"
#include "Server/Skyvault/Client/Dav/MultiStatus.h"

#include <gtest/gtest.h>

using namespace Vs;
using namespace Vs::Cloud;

namespace {

const QUrl kRoot("https://drive.example.org/dav/my%20files/");

struct Read
{
    std::vector<DavItem> items;
    DriveResult result;
};

Read read(const QByteArray& xml, qsizetype piece = 1 << 20)
{
    Read made;
    const Address address(kRoot);
    MultiStatus reader(address, [&](DavItem&& item) { made.items.push_back(std::move(item)); });
    for (qsizetype at = 0; at < xml.size() && made.result.isOk(); at += piece)
        made.result = reader.add(xml.mid(at, piece));
    if (made.result.isOk())
        made.result = reader.end();
    return made;
}

QByteArray response(const QByteArray& href, const QByteArray& properties = {}, const char* status = "200 OK")
{
    return "<d:response><d:href>" + href + "</d:href><d:propstat><d:prop>" + properties +
           "</d:prop><d:status>HTTP/1.1 " + status + "</d:status></d:propstat></d:response>";
}

QByteArray listing(const QByteArray& responses)
{
    return "<?xml version=\"1.0\"?><d:multistatus xmlns:d=\"DAV:\">" + responses + "</d:multistatus>";
}

std::vector<std::string> paths(const Read& made)
{
    std::vector<std::string> result;
    for (const DavItem& item : made.items)
        result.push_back(item.entry.path);
    return result;
}

} // namespace

TEST(ListingTest, AnEntryHasWhatTheServerTellsHoweverThePiecesAreCut)
{
    const QByteArray xml =
        listing(response("/dav/my%20files/", "<d:resourcetype><d:collection/></d:resourcetype>") +
                response("/dav/my%20files/w%C3%A4hle%23%3F%25.vlra",
                         "<d:resourcetype/><d:getcontentlength>5000000000</d:getcontentlength>"
                         "<d:getetag>W/&quot;a&amp;b&quot;</d:getetag>"
                         "<d:getlastmodified>Sun, 06 Nov 1994 08:49:37 GMT</d:getlastmodified>"
                         "<d:creator-displayname>Anna <![CDATA[& Co]]></d:creator-displayname>"));
    for (const qsizetype piece : {qsizetype(1), qsizetype(7), xml.size()}) {
        const Read made = read(xml, piece);
        ASSERT_TRUE(made.result.isOk()) << made.result.detail;
        ASSERT_EQ(paths(made), (std::vector<std::string>{"/", "/wähle#?%.vlra"}));
        EXPECT_TRUE(made.items[0].entry.isFolder);
        const DriveEntry& file = made.items[1].entry;
        EXPECT_FALSE(file.isFolder);
        EXPECT_EQ(file.size, 5000000000u);
        EXPECT_EQ(file.etag, "W/\"a&b\"");
        EXPECT_EQ(file.modifiedBy, "Anna & Co");
        EXPECT_EQ(std::chrono::system_clock::to_time_t(file.modified), 784111777);
    }
}

TEST(ListingTest, NamesThatNoFileCouldHaveAndOtherPlacesAreLeftOut)
{
    const QByteArray root = "/dav/my%20files/";
    QByteArray responses;
    for (const QByteArray& name :
         {QByteArray(".."), QByteArray("%2e%2e"), QByteArray("a%2Fb"), QByteArray("a%5Cb"),
          QByteArray("a%00b"), QByteArray("a%0Ab"), QByteArray("a%7F"), QByteArray("%FF%FE"),
          QByteArray("a//b"), QByteArray("a/../../b"), QByteArray(256, 'n')})
        responses += response(root + name);
    responses += response("https://other.example.org" + root + "a") + response("/elsewhere/a") +
                 response("//other.example.org" + root + "a") + response("/dav/my%20filesystem/a") +
                 response("a") + response("") + response("http://[bad") +
                 response("https://DRIVE.example.org/dav/my%20files/A") + response(root + "a") +
                 response(root + QByteArray(255, 'n')) + response(root + "...");
    const Read made = read(listing(responses));
    ASSERT_TRUE(made.result.isOk()) << made.result.detail;
    EXPECT_EQ(paths(made), (std::vector<std::string>{"/A", "/a", "/" + std::string(255, 'n'), "/..."}));
}

TEST(ListingTest, WhatWasNotFoundOrRefusedIsNotTold)
{
    const QByteArray href = "/dav/my%20files/a";
    const QByteArray parts =
        "<d:response><d:href>" + href +
        "</d:href><d:propstat><d:prop><d:getcontentlength>7</d:getcontentlength></d:prop>"
        "<d:status>HTTP/1.1 200 OK</d:status></d:propstat><d:propstat><d:prop><d:getetag>none</d:getetag>"
        "<d:getcontentlength>9</d:getcontentlength></d:prop><d:status>HTTP/1.1 404 Not Found</d:status>"
        "</d:propstat></d:response>";
    const QByteArray refused =
        "<d:response><d:href>" + href + "2</d:href><d:status>HTTP/1.1 403 Forbidden</d:status></d:response>";
    const Read made = read(listing(parts + refused));
    ASSERT_EQ(paths(made), std::vector<std::string>{"/a"});
    EXPECT_EQ(made.items[0].entry.size, 7u);
    EXPECT_EQ(made.items[0].entry.etag, "");
}

TEST(ListingTest, AnAnswerThatIsNoWholeListingIsABadAnswer)
{
    const QByteArray whole = listing(response("/dav/my%20files/a"));
    QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE m [<!ENTITY a \"aaaaaaaaaa\">";
    for (char name = 'b'; name < 'l'; ++name)
        bomb += QByteArray("<!ENTITY ") + name + " \"" +
                QByteArray("&" + QByteArray(1, char(name - 1)) + ";").repeated(10) + "\">";
    bomb += "]><d:multistatus xmlns:d=\"DAV:\">" + response("&k;") + "</d:multistatus>";
    const std::vector<std::pair<const char*, QByteArray>> answers{
        {"nothing", ""},
        {"a page", "<html><body>Please log in</body></html>"},
        {"bytes", QByteArray::fromHex("00ff1b5d003c")},
        {"a part", whole.left(whole.size() - 5)},
        {"another namespace", QByteArray(whole).replace("DAV:", "urn:x")},
        {"crossed elements", listing("<d:response></d:href></d:response>")},
        {"an entity bomb", bomb},
        {"a file of this machine",
         "<?xml version=\"1.0\"?><!DOCTYPE m [<!ENTITY f SYSTEM \"file:///etc/passwd\">]>" + whole.mid(21)},
        {"an entity", listing(response("/dav/my%20files/&unknown;"))},
        {"endless depth", listing(QByteArray("<d:a>").repeated(100000))},
        {"an endless name", listing(response("/dav/my%20files/" + QByteArray(1 << 20, 'n')))}};
    for (const auto& [what, xml] : answers) {
        const Read made = read(xml);
        EXPECT_EQ(made.result.state, CloudErrorState::BadAnswer) << what;
        EXPECT_FALSE(made.result.detail.empty()) << what;
        EXPECT_LT(made.result.detail.size(), 400u) << what;
    }
}

TEST(ListingTest, AListingBeyondAllMeasureEndsInsteadOfFillingTheMemory)
{
    const Address address(kRoot);
    size_t entries = 0;
    MultiStatus reader(address, [&](DavItem&&) { ++entries; });
    DriveResult result = reader.add("<?xml version=\"1.0\"?><d:multistatus xmlns:d=\"DAV:\">");
    const QByteArray thousand = response("/dav/my%20files/a").repeated(1000);
    int thousands = 0;
    for (; result.isOk() && thousands < 1000; ++thousands)
        result = reader.add(thousand);
    EXPECT_EQ(result.state, CloudErrorState::BadAnswer);
    EXPECT_NE(result.detail.find("64 MB"), std::string::npos) << result.detail;
    EXPECT_GT(entries, 100000u);
}

TEST(ListingTest, APathComesBackFromTheAddressThatItBecomes)
{
    const Address address(kRoot);
    for (const char* path : {"/", "/a", "/a b/ü%23/c#?;&=+:@.vlra", "/%2F", "/~[x]", "/日本/…", "/a%"}) {
        EXPECT_EQ(address.pathOf(address.of(path).toEncoded()), path) << path;
        EXPECT_EQ(address.pathOf(address.of(path, true).toEncoded()), path) << path;
        EXPECT_TRUE(isDrivePath(path)) << path;
    }
    for (const char* path : {"", "a", "/a/", "//a", "/a/../b", "/.", "/a\\b", "/a\nb"})
        EXPECT_FALSE(isDrivePath(path)) << path;
    EXPECT_EQ(parentOf("/a/b"), "/a");
    EXPECT_EQ(parentOf("/a"), "/");
    EXPECT_EQ(joined("/", "a"), "/a");
    EXPECT_EQ(joined("/a", "b"), "/a/b");
}

TEST(ListingTest, ACopyIsCalledByWhoAndWhenWithinWhatANameMayHave)
{
    DriveEntry other{.path = "/parts/wheel.vlra", .modifiedBy = "an/na"};
    other.modified = std::chrono::sys_days(std::chrono::year(2026) / 3 / 4) + std::chrono::hours(5);
    EXPECT_EQ(nameOfCopy(other, 1), "/parts/wheel (an-na 2026-03-04 05.00.00).vlra");
    EXPECT_EQ(nameOfCopy(other, 2), "/parts/wheel (an-na 2026-03-04 05.00.00) 2.vlra");
    EXPECT_EQ(nameOfCopy({.path = "/.hidden"}, 1), "/.hidden (other)");
    QByteArray umlauts;
    while (umlauts.size() < 250)
        umlauts += "ü";
    const std::string longest = nameOfCopy({.path = "/" + umlauts.toStdString() + ".vlra"}, 20);
    EXPECT_TRUE(isDrivePath(longest)) << longest;
    EXPECT_TRUE(longest.ends_with(" (other) 20.vlra")) << longest;
}
