// Damaged STEP and IGES files: their sound content opens, and nothing is silently lost or changed.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/DamagedParts.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Support/Seed.h"

#include <boost/algorithm/string.hpp>
#include <boost/format.hpp>

#include <algorithm>
#include <map>
#include <random>
#include <regex>

using namespace Vs;

namespace {

/// The statements of a file by their numbers, each of which can be changed.
class StepFile
{
public:
    explicit StepFile(const std::string& text)
    {
        const size_t data = text.find("DATA;");
        m_head = text.substr(0, data + 5);
        const std::regex statement("#([0-9]+) *= *((?:'[^']*'|[^';])*);");
        for (std::sregex_iterator each(text.begin() + long(data), text.end(), statement), end; each != end;
             ++each)
            m_statements[std::stoi((*each)[1])] = (*each)[2];
    }

    std::string& operator[](int number) { return m_statements.at(number); }
    void remove(int number) { m_statements.erase(number); }
    void put(int number, const std::string& statement) { m_statements[number] = statement; }
    /// The n-th statement of the entity, from 0.
    int find(const std::string& entity, int n = 0) const
    {
        // A complex instance has several, wherever its lines break.
        const std::regex one(entity + "\\([^]*"), ofSeveral("\\([^]*\\b" + entity + "\\b[^]*");
        for (const auto& [number, text] : m_statements)
            if (std::regex_match(text, text[0] == '(' ? ofSeveral : one) && n-- == 0)
                return number;
        ADD_FAILURE() << "no " << entity;
        return 0;
    }
    std::string text() const
    {
        std::string text = m_head + '\n';
        for (const auto& [number, statement] : m_statements)
            text += '#' + std::to_string(number) + '=' + statement + ";\n";
        return text + "ENDSEC;\nEND-ISO-10303-21;\n";
    }

private:
    std::string m_head;
    std::map<int, std::string> m_statements;
};

/// The lines of an IGES file, each of which can be changed.
class IgesFile
{
public:
    explicit IgesFile(const std::string& text)
    {
        boost::split(m_lines, boost::trim_right_copy(text), boost::is_any_of("\n"));
    }

    /// The first line of the n-th entity of that type, from 0: of its directory entry (D) or its parameters
    /// (P).
    std::string& find(char section, int type, int n = 0)
    {
        const std::string start =
            section == 'D' ? (boost::format("%8d") % type).str() : std::to_string(type) + ',';
        for (std::string& line : m_lines)
            if (line.size() > 72 && line[72] == section && line.starts_with(start) && n-- == 0)
                return line;
        ADD_FAILURE() << "no " << type;
        return m_lines.front();
    }
    std::string& first() { return m_lines.front(); }
    std::string& last() { return m_lines.back(); }
    /// Without lines that were emptied.
    std::string text() const
    {
        std::string text;
        for (const std::string& line : m_lines)
            text += line.empty() ? "" : line + '\n';
        return text;
    }

private:
    std::vector<std::string> m_lines;
};

/// The line with another beginning, whose columns stay where they are.
std::string begun(const std::string& line, const std::string& beginning)
{
    return beginning + std::string(64 - beginning.size(), ' ') + line.substr(64);
}

size_t facesOf(const Asset& asset, const wchar_t* part)
{
    const Component* const component = partNamed(asset, part);
    return component ? component->body->mesh()->faces.size() : 0;
}

} // namespace

class SalvageTest : public DataModelTest
{
protected:
    SalvageTest()
    {
        EXPECT_TRUE(save(boxAndCylinder(), scratch("whole.stp")));
        whole = contentOf(scratch("whole.stp"));
        volume = volumeOf(*boxAndCylinder());
    }

    /// Opens the text as a file and returns its model; null if it doesn't open.
    Asset* opened(const std::string& text, const std::string& suffix = ".stp")
    {
        Document* const document = open(write("damaged" + std::to_string(++files) + suffix, text));
        return document ? document->activeAsset() : nullptr;
    }
    bool openStrictly(const std::wstring& path)
    {
        TranslatorOpenOptions options;
        options.fileName(path);
        options.isStrict(true);
        TranslatorContext context;
        context.open(true);
        status = {};
        TranslatorFileRecognizer recognizer("", false);
        recognizer.recognize();
        return recognizer.translator(path)->open(options, context, status);
    }
    std::string said() const { return Strings::narrow(status.toString()); }

    std::string whole;
    double volume = 0;
    int files = 0;
};

TEST_F(SalvageTest, APartLosesTheFaceThatIsUnsoundAndTheOthersStayAsTheyAre)
{
    const std::pair<const char*, std::function<void(StepFile&)>> damages[] = {
        {"a face is gone", [](StepFile& file) { file.remove(file.find("ADVANCED_FACE")); }},
        {"its surface is a point",
         [](StepFile& file) {
             std::string& face = file[file.find("ADVANCED_FACE")];
             face = std::regex_replace(face, std::regex("#[0-9]+(?=,\\.[TF]\\.\\)$)"),
                                       '#' + std::to_string(file.find("CARTESIAN_POINT")));
         }},
        {"a type is misspelt",
         [](StepFile& file) { boost::replace_first(file[file.find("FACE_BOUND")], "FACE_B", "FACE_8"); }}};
    for (const auto& [name, damage] : damages) {
        SCOPED_TRACE(name);
        StepFile file(whole);
        damage(file);
        Asset* const asset = opened(file.text());
        ASSERT_NE(asset, nullptr) << said();
        EXPECT_EQ(facesOf(*asset, L"Red box") + facesOf(*asset, L"Turned cylinder"), 8u) << said();
        EXPECT_NE(said().find("1 of "), std::string::npos) << said();
        EXPECT_NE(said().find("is damaged"), std::string::npos) << said();

        // The model remembers which part it is.
        const auto damaged = DamagedParts::of(*asset);
        ASSERT_EQ(damaged.size(), 1u) << said();
        const std::string id = damaged.begin()->first;
        const size_t all = asset->findComponent(id)->name == L"Red box" ? 6 : 3;
        EXPECT_EQ(damaged.at(id), DamagedParts::Loss(1, all));
        EXPECT_GE(DamagedParts::warningsOf(*asset).size(), 2u);
        const std::wstring kept = scratch("kept" + std::to_string(files) + ".tdsn");
        ASSERT_TRUE(asset->document()->saveAs(kept, status)) << said();
        DocumentMgr::get()->close(asset->document());
        EXPECT_EQ(DamagedParts::of(*open(kept)->activeAsset()).at(id), DamagedParts::Loss(1, all));
    }
    EXPECT_TRUE(DamagedParts::of(*opened(whole)).empty());
}

TEST_F(SalvageTest, WhatIsOnlyWrittenBadlyIsWholeAgain)
{
    const StepFile file(whole);
    const std::string text = file.text();
    const auto replaced = [&](const std::string& from, const std::string& to) {
        return boost::replace_first_copy(text, from, to);
    };
    const auto twice = [&](const std::string& entity) {
        const std::string start = '#' + std::to_string(file.find(entity)) + "=";
        const std::string statement =
            text.substr(text.find(start), text.find(';', text.find(start)) + 1 - text.find(start));
        return replaced(statement, statement + '\n' + statement);
    };
    const std::pair<const char*, std::string> damages[] = {
        {"no header", "ISO-10303-21;\n" + text.substr(text.find("DATA;"))},
        {"another first word", replaced("ISO-10303-21", "ISO-1O303-21")},
        {"no end", text.substr(0, text.find("ENDSEC;\nEND-ISO"))},
        {"no semicolon", replaced(";\n#" + std::to_string(file.find("PRODUCT_CONTEXT")),
                                  "\n#" + std::to_string(file.find("PRODUCT_CONTEXT")))},
        {"a statement twice", replaced("#" + std::to_string(file.find("PLANE")) + "=",
                                       "#" + std::to_string(file.find("PLANE")) + "=PLANE('',#999999);\n#" +
                                           std::to_string(file.find("PLANE")) + "=")},
        {"an assembly twice", twice("PRODUCT_DEFINITION")},
        {"a lost quote", replaced("=PRODUCT_CONTEXT('", "=PRODUCT_CONTEXT(")},
        {"no uncertainty", replaced("UNCERTAINTY_MEASURE_WITH_UNIT(", "UNCERTAINTY_MEASURE_WITH_UNlT(")}};
    const size_t components = componentsOf(*opened(whole)).size();
    for (const auto& [name, damaged] : damages) {
        SCOPED_TRACE(name);
        Asset* const asset = opened(damaged);
        ASSERT_NE(asset, nullptr) << said();
        EXPECT_NEAR(volumeOf(*asset), volume, 1e-5 * volume) << said();
        EXPECT_EQ(componentsOf(*asset).size(), components) << said();
        EXPECT_TRUE(partNamed(*asset, L"Red box") && partNamed(*asset, L"Turned cylinder"));
    }
}

TEST_F(SalvageTest, AChainOfWhatNeedsTheNextGoesAsAWhole)
{
    const StepFile file(whole);
    constexpr int kLength = 200'000;
    std::string chain;
    for (int i = 1; i <= kLength; ++i) // The last one's target is missing.
        chain += '#' + std::to_string(100'000 + i) + "=OFFSET_SURFACE('',#" + std::to_string(100'001 + i) +
                 ",1.,.F.);\n";
    Asset* const asset = opened(boost::replace_first_copy(file.text(), "DATA;\n", "DATA;\n" + chain));
    ASSERT_NE(asset, nullptr) << said();
    EXPECT_NEAR(volumeOf(*asset), volume, 1e-5 * volume);
    EXPECT_NE(said().find("is damaged"), std::string::npos) << said();
}

TEST_F(SalvageTest, WhatIsLeftAloneIsShownAsSalvaged)
{
    StepFile file(whole);
    file.remove(file.find("CLOSED_SHELL"));
    Asset* asset = opened(file.text());
    ASSERT_NE(asset, nullptr) << said();
    EXPECT_NE(said().find("are shown as \"Salvaged\""), std::string::npos) << said();
    EXPECT_EQ(
        facesOf(*asset, L"Salvaged") + facesOf(*asset, L"Red box") + facesOf(*asset, L"Turned cylinder"), 9u);

    // A solid that no product shows any more is nevertheless a solid.
    StepFile other(whole);
    other.remove(other.find("SHAPE_DEFINITION_REPRESENTATION"));
    other.remove(other.find("SHAPE_DEFINITION_REPRESENTATION"));
    asset = opened(other.text());
    ASSERT_NE(asset, nullptr) << said();
    EXPECT_NEAR(volumeOf(*asset), volume, 1e-5 * volume);
}

TEST_F(SalvageTest, LostUnitsAreToldAndMillimetresTaken)
{
    // The name of a unit is enough to identify it.
    StepFile inches(whole);
    const std::string text = inches.text(), millimetres = inches[inches.find("LENGTH_UNIT")];
    const std::regex lengthUnit("LENGTH_UNIT\\(\\)");
    const auto count = std::distance(std::sregex_iterator(text.begin(), text.end(), lengthUnit), {});
    for (int n = 0; n < count; ++n)
        inches[inches.find("LENGTH_UNIT", n)] =
            "(CONVERSION_BASED_UNIT('INCH',#900001)LENGTH_UNIT()NAMED_UNIT(#999999))";
    inches.put(900'000, millimetres);
    inches.put(900'001, "LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),#900000)");
    Asset* const larger = opened(inches.text());
    ASSERT_NE(larger, nullptr) << said();
    EXPECT_NEAR(volumeOf(*larger), volume * 25.4 * 25.4 * 25.4, 1e-4 * volume * 25.4 * 25.4 * 25.4);
    EXPECT_EQ(said().find("millimetres are assumed"), std::string::npos) << said();

    StepFile file(whole);
    for (const std::regex lengths("LENGTH_UNIT\\(\\)"); std::regex_search(file.text(), lengths);)
        file.remove(file.find("LENGTH_UNIT"));
    Asset* const asset = opened(file.text());
    ASSERT_NE(asset, nullptr) << said();
    EXPECT_NEAR(volumeOf(*asset), volume, 1e-5 * volume);
    EXPECT_NE(said().find("millimetres are assumed"), std::string::npos) << said();
}

TEST_F(SalvageTest, AStrictOpeningRefusesAndASecondOneWarnsAgain)
{
    StepFile file(whole);
    file.remove(file.find("ADVANCED_FACE"));
    const std::wstring path = write("face.stp", file.text());
    EXPECT_FALSE(openStrictly(path));
    EXPECT_TRUE(status.isError() && said().find("face.stp") != std::string::npos) << said();
    EXPECT_NE(said().find("is damaged: it lacks 1 of "), std::string::npos) << said();
    // No later opening takes it for sound.
    for (int i = 0; i < 2; ++i) {
        ASSERT_NE(open(path), nullptr) << said();
        EXPECT_NE(said().find("is damaged"), std::string::npos) << said();
    }
}

TEST_F(SalvageTest, FacesOnWhichTheKernelDiesAreFoundAndTheOthersStay)
{
    // The point of a plane, where one in space belongs: each statement by itself is sound.
    StepFile file(whole);
    file.put(90001, "CARTESIAN_POINT('',(1.,1.))");
    file[file.find("VERTEX_POINT")] = "VERTEX_POINT('',#90001)";
    Asset* const asset = opened(file.text());
    ASSERT_NE(asset, nullptr) << said();
    EXPECT_EQ(facesOf(*asset, L"Red box") + facesOf(*asset, L"Turned cylinder"), 6u) << said();
    EXPECT_NE(said().find("lacks 3 of 6 faces of \"Red box\""), std::string::npos) << said();
    EXPECT_FALSE(openStrictly(write("strict.stp", file.text() + '\n')));
}

TEST_F(SalvageTest, AFaceOfWhichTheKernelMakesNothingIsToldOf)
{
    // Each statement by itself is sound.
    StepFile file(whole);
    file[file.find("PLANE")] = "OFFSET_SURFACE('',#" + std::to_string(file.find("PLANE", 1)) + ",0.,.F.)";
    const std::wstring path = write("replica.stp", file.text());
    const Document* const document = open(path);
    ASSERT_NE(document, nullptr) << said();
    EXPECT_NE(said().find("has 1 of 6 faces of \"Red box\" that can't be shown"), std::string::npos)
        << said();
    const auto marked = DamagedParts::of(*document->activeAsset());
    ASSERT_EQ(marked.size(), 1u);
    EXPECT_EQ(marked.begin()->second, DamagedParts::Loss(1, 6));
    // It counts together with those that are left out.
    StepFile both = file;
    std::string& other = both[both.find("ADVANCED_FACE", 3)];
    other = "ADVANCED_FACF" + other.substr(other.find('('));
    const auto more = DamagedParts::of(*opened(both.text()));
    ASSERT_EQ(more.size(), 1u) << said();
    EXPECT_EQ(more.begin()->second, DamagedParts::Loss(2, 6)) << said();
    EXPECT_FALSE(openStrictly(write("strict.stp", file.text() + '\n')));
    EXPECT_NE(said().find("can't be shown"), std::string::npos) << said();
}

TEST_F(SalvageTest, OfAnIgesFileAPartLosesTheFaceThatIsUnsound)
{
    ASSERT_TRUE(save(boxAndCylinder(), scratch("whole.igs")));
    const std::string iges = contentOf(scratch("whole.igs"));
    const std::pair<const char*, std::function<void(IgesFile&)>> damages[] = {
        {"its entry lacks a line", [](IgesFile& file) { file.find('D', 510) = ""; }},
        {"its parameters are gone", [](IgesFile& file) { file.find('P', 510) = ""; }},
        {"its surface is itself",
         [](IgesFile& file) {
             std::string& face = file.find('P', 510);
             face = begun(face, "510," + face.substr(66, 6) + ",1,1,1;");
         }},
        {"its surface has no radius",
         [](IgesFile& file) {
             std::string& surface = file.find('P', 192);
             surface =
                 begun(surface, std::regex_replace(surface.substr(0, 40), std::regex(",5\\."), ",1.E300"));
         }},
        {"its place is garbage", [](IgesFile& file) { file.find('D', 510).replace(48, 8, "  8O1   "); }}};
    for (const auto& [name, damage] : damages) {
        SCOPED_TRACE(name);
        IgesFile file(iges);
        damage(file);
        Asset* const asset = opened(file.text(), ".igs");
        ASSERT_NE(asset, nullptr) << said();
        EXPECT_EQ(facesOf(*asset, L"Red box") + facesOf(*asset, L"Turned cylinder"), 8u) << said();
        EXPECT_NE(said().find("is damaged"), std::string::npos) << said();
        EXPECT_EQ(DamagedParts::of(*asset).size(), 1u) << said();
        EXPECT_NEAR(volumeOf(*asset), 0, volume - 1);
        EXPECT_FALSE(openStrictly(write("strict.igs", file.text())));
    }
    EXPECT_TRUE(DamagedParts::of(*opened(iges, ".igs")).empty());
}

TEST_F(SalvageTest, AnIgesFileThatIsOnlyWrittenBadlyIsWholeAgain)
{
    ASSERT_TRUE(save(boxAndCylinder(), scratch("whole.igs")));
    const std::string iges = contentOf(scratch("whole.igs"));
    const std::pair<const char*, std::function<void(IgesFile&)>> damages[] = {
        {"no beginning", [](IgesFile& file) { file.first() = ""; }},
        {"no end", [](IgesFile& file) { file.last() = ""; }},
        {"a section of another letter", [](IgesFile& file) { file.find('P', 510)[72] = 'D'; }},
        {"a line of another number", [](IgesFile& file) { file.find('D', 510).replace(76, 4, "9999"); }},
        {"a line twice", [](IgesFile& file) { file.find('D', 510) += '\n' + file.find('D', 510); }},
        {"a lost end of a line",
         [](IgesFile& file) {
             std::string& line = file.find('D', 510);
             line += 'x' + line.substr(0, 73) + line.substr(73);
         }},
        {"parameters elsewhere", [](IgesFile& file) { file.find('D', 510).replace(8, 8, "       1"); }},
        {"a type that only the others tell",
         [](IgesFile& file) { file.find('D', 510).replace(0, 8, "     116"); }},
        {"a colour that is a face",
         [](IgesFile& file) { file.find('D', 510, 1).replace(16, 8, "      -1"); }}};
    for (const auto& [name, damage] : damages) {
        SCOPED_TRACE(name);
        IgesFile file(iges);
        damage(file);
        Asset* const asset = opened(file.text(), ".igs");
        ASSERT_NE(asset, nullptr) << said();
        EXPECT_NEAR(volumeOf(*asset), volume, 1e-5 * volume) << said();
        EXPECT_TRUE(partNamed(*asset, L"Red box") && partNamed(*asset, L"Turned cylinder"));
    }
    // Of a file that is cut off, what comes before its end is left.
    Asset* const asset = opened(iges.substr(0, iges.find("\n186,", iges.find("\n186,") + 1)), ".igs");
    ASSERT_NE(asset, nullptr) << said();
    size_t faces = 0;
    for (const Component* component : componentsOf(*asset))
        faces += component->body ? component->body->mesh()->faces.size() : 0;
    EXPECT_EQ(faces, 6u) << said();
    EXPECT_NE(said().find("lacks 3 of "), std::string::npos) << said();
}

TEST_F(SalvageTest, WhateverIsDamagedIsAnsweredAndNothingIsInvented)
{
    std::mt19937 random(TestSupport::seed());
    const auto number = [&](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    };
    const std::regex statement("#[0-9]+ *=[^;]*;\\s*"), reference("#[0-9]+(?=[,)])"),
        decimal("-?[0-9]+\\.[0-9]*");
    const auto some = [&](const std::string& text, const std::regex& pattern) {
        const auto count = std::distance(std::sregex_iterator(text.begin(), text.end(), pattern), {});
        return std::next(std::sregex_iterator(text.begin(), text.end(), pattern), number(0, int(count) - 1))
            ->
            operator[](0);
    };
    for (int i = 0; i < 60; ++i) {
        std::string text = whole;
        const auto replace = [&](const std::regex& pattern, const auto& with) {
            const std::ssub_match place = some(text, pattern);
            const std::string now = with(place.str());
            text.replace(size_t(place.first - text.cbegin()), size_t(place.length()), now);
        };
        SCOPED_TRACE(i);
        for (int n = number(1, i % 6 == 1 ? 1 : 5); n > 0; --n)
            switch (i % 6) {
            case 0:
                for (int k = 0; k < 4; ++k)
                    text[size_t(number(0, int(text.size()) - 1))] = char(number(' ', '~'));
                break;
            case 1:
                text.resize(size_t(number(int(text.size()) / 2, int(text.size()))));
                break;
            case 2:
                replace(reference, [&](const std::string&) { return some(whole, reference).str(); });
                break;
            case 3:
                replace(decimal,
                        [&](const std::string&) { return std::string(number(0, 1) ? "1.E30" : "0."); });
                break;
            case 4:
                replace(statement, [](const std::string&) { return std::string(); });
                break;
            default:
                replace(statement, [](const std::string& one) { return one + one; });
                break;
            }
        Asset* const asset = opened(text);
        EXPECT_EQ(asset == nullptr, status.isError()) << said();
        if (!asset)
            continue;
        size_t faces = 0;
        for (const Component* component : componentsOf(*asset))
            faces += component->body ? component->body->mesh()->faces.size() : 0;
        EXPECT_LE(faces, 9u) << said();
    }
}
