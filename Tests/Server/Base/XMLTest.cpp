#include "Server/Base/XMLUtility.h"
#include "Tests/Support/Process.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kSchema = R"(<?xml version="1.0"?>
<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="Parts"><xs:complexType><xs:sequence>
    <xs:element name="Part" type="xs:int" maxOccurs="3"/>
  </xs:sequence></xs:complexType></xs:element>
</xs:schema>
)";

class XMLTest : public testing::Test
{
protected:
    std::vector<Vs::XMLUtility::Error> errorsOf(const std::string& content)
    {
        return Vs::XMLUtility::validate(folder.write("file.xml", content), schema);
    }

    TestSupport::ScratchFolder folder;
    boost::filesystem::path schema = folder.write("schema.xsd", kSchema);
};

TEST_F(XMLTest, ThatIsValidHasNoErrors)
{
    EXPECT_TRUE(errorsOf("<Parts><Part>1</Part></Parts>").empty());
    EXPECT_TRUE(Vs::XMLUtility::schemaValidator(folder.path() / "file.xml", schema));
}

TEST_F(XMLTest, ThatIsInvalidOrMalformedNamesFileLineAndCause)
{
    const auto invalid = errorsOf("<Parts>\n<Part>1</Part>\n<Part>one</Part>\n</Parts>");
    ASSERT_FALSE(invalid.empty());
    EXPECT_EQ(invalid[0].line, 3);
    EXPECT_NE(invalid[0].toString().find(L"file.xml:3: "), std::wstring::npos);
    EXPECT_NE(invalid[0].message.find(L"Part"), std::wstring::npos);
    const auto malformed = errorsOf("<Parts>\n<Part>1</Parts>");
    ASSERT_EQ(malformed.size(), 1u);
    EXPECT_EQ(malformed[0].line, 2);
    EXPECT_EQ(errorsOf("").size(), 1u);
    EXPECT_EQ(errorsOf(std::string("\0\xff garbage", 10)).size(), 1u);
}

TEST_F(XMLTest, ThatIsMissingOrAFolderSaysSo)
{
    const auto missing = Vs::XMLUtility::validate(folder.path() / "none.xml", schema);
    ASSERT_EQ(missing.size(), 1u);
    EXPECT_EQ(missing[0].message, L"There is no such file.");
    EXPECT_EQ(Vs::XMLUtility::validate(folder.path(), schema).size(), 1u);
    const auto noSchema =
        Vs::XMLUtility::validate(folder.write("file.xml", "<Parts/>"), folder.path() / "none.xsd");
    ASSERT_EQ(noSchema.size(), 1u);
    EXPECT_NE(noSchema[0].toString().find(L"none.xsd"), std::wstring::npos);
}

TEST_F(XMLTest, ReadsNothingBesideItsOwnFile)
{
    folder.write("other.xsd",
                 "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"urn:x\">"
                 "<xs:element name=\"Any\"/></xs:schema>");
    const auto ownSchema =
        errorsOf("<Any xmlns=\"urn:x\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                 "xsi:schemaLocation=\"urn:x other.xsd\"/>");
    EXPECT_FALSE(ownSchema.empty());
    folder.write("secret.txt", "1");
    EXPECT_FALSE(
        errorsOf("<!DOCTYPE Parts [<!ENTITY e SYSTEM \"secret.txt\">]><Parts><Part>&e;</Part></Parts>")
            .empty());
    std::string bomb = "<!DOCTYPE Parts [<!ENTITY a \"1111111111\">";
    for (char c = 'b'; c < 'k'; ++c) {
        bomb += std::string("<!ENTITY ") + c + " \"";
        for (int i = 0; i < 10; ++i)
            bomb += std::string("&") + static_cast<char>(c - 1) + ';';
        bomb += "\">";
    }
    EXPECT_FALSE(errorsOf(bomb + "]><Parts><Part>&j;</Part></Parts>").empty());
}

} // namespace
