// Assemblies in STEP files: many, deep, and some that no honest program writes.

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Tests/Server/DataModel/Fixture.h"

#include <algorithm>
#include <cmath>
#include <regex>
#include <sstream>

using namespace Vs;

namespace {

/// Adds products to a STEP file of a single part.
class StepText
{
public:
    static constexpr size_t kPart = 0; ///< What the file contained before.

    explicit StepText(std::string text) : m_text(std::move(text))
    {
        std::erase(m_text, '\n');
        const std::regex number("#(\\d+) =");
        for (std::sregex_iterator each(m_text.begin(), m_text.end(), number), end; each != end; ++each)
            m_last = std::max(m_last, std::stoi((*each)[1]));
        const std::smatch shape =
            find("#(\\d+) = ADVANCED_BREP_SHAPE_REPRESENTATION\\('',\\(#(\\d+),[^)]*\\),#(\\d+)\\)");
        m_origin = shape[2];
        m_space = shape[3];
        m_products.push_back(
            {std::stoi(find("#(\\d+) = PRODUCT_DEFINITION\\(")[1]), std::stoi(shape[1]), {}});
        m_productContext = find("#(\\d+) = PRODUCT_CONTEXT\\(")[1];
        m_definitionContext = find("#(\\d+) = PRODUCT_DEFINITION_CONTEXT\\(")[1];
    }

    size_t assembly(const std::string& name)
    {
        const int product = add("PRODUCT('" + name + "','" + name + "','',(#" + m_productContext + "))");
        const int formation = add("PRODUCT_DEFINITION_FORMATION('',''," + id(product) + ")");
        const int definition =
            add("PRODUCT_DEFINITION('design',''," + id(formation) + ",#" + m_definitionContext + ")");
        const int shape = add("PRODUCT_DEFINITION_SHAPE('',''," + id(definition) + ")");
        m_products.push_back({definition, ++m_last, {}});
        add("SHAPE_DEFINITION_REPRESENTATION(" + id(shape) + "," + id(m_products.back().shape) + ")");
        return m_products.size() - 1;
    }

    /// Shifts the part by `x`. The relation of the two shapes can be stated the other way round than the
    /// usage.
    void use(size_t assembly, size_t part, int x, bool reversed = false)
    {
        const int point = add("CARTESIAN_POINT('',(" + std::to_string(x) + ".,0.,0.))");
        const int place = add("AXIS2_PLACEMENT_3D(''," + id(point) + ",$,$)");
        m_products[assembly].places.push_back(place);
        const int way = add("ITEM_DEFINED_TRANSFORMATION('','',#" + m_origin + "," + id(place) + ")");
        const int first = m_products[reversed ? assembly : part].shape;
        const int second = m_products[reversed ? part : assembly].shape;
        const int relation = add("( REPRESENTATION_RELATIONSHIP('',''," + id(first) + "," + id(second) +
                                 ") REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION(" + id(way) +
                                 ") SHAPE_REPRESENTATION_RELATIONSHIP() )");
        const int usage =
            add("NEXT_ASSEMBLY_USAGE_OCCURRENCE('','',''," + id(m_products[assembly].definition) + "," +
                id(m_products[part].definition) + ",$)");
        const int shape = add("PRODUCT_DEFINITION_SHAPE('',''," + id(usage) + ")");
        add("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION(" + id(relation) + "," + id(shape) + ")");
    }

    std::string text() const
    {
        std::ostringstream shapes;
        for (size_t i = 1; i < m_products.size(); ++i) {
            shapes << id(m_products[i].shape) << " = SHAPE_REPRESENTATION('',(#" << m_origin;
            for (const int place : m_products[i].places)
                shapes << ',' << id(place);
            shapes << "),#" << m_space << ");\n";
        }
        std::string whole = m_text;
        return whole.insert(whole.rfind("ENDSEC;"), m_added.str() + shapes.str());
    }

private:
    struct Product
    {
        int definition = 0, shape = 0;
        std::vector<int> places;
    };

    static std::string id(int number) { return "#" + std::to_string(number); }

    std::smatch find(const std::string& pattern) const
    {
        std::smatch found;
        EXPECT_TRUE(std::regex_search(m_text, found, std::regex(pattern))) << pattern;
        return found;
    }

    int add(const std::string& entity)
    {
        m_added << id(++m_last) << " = " << entity << ";\n";
        return m_last;
    }

    std::string m_text;
    std::ostringstream m_added;
    std::string m_origin, m_space, m_productContext, m_definitionContext;
    int m_last = 0;
    std::vector<Product> m_products;
};

std::vector<int> shiftsOf(const Component& assembly)
{
    std::vector<int> shifts;
    for (const auto& child : assembly.children)
        shifts.push_back(static_cast<int>(std::lround(child->placement.matrix().entry[0][3])));
    return shifts;
}

} // namespace

class StepAssembliesTest : public DataModelTest
{
protected:
    StepText onePart()
    {
        Asset* asset = newAsset();
        ModelBuilder(asset).box(1, 2, 3, {{}, L"Box", std::nullopt}, status);
        EXPECT_TRUE(save(asset, scratch("part.stp"))) << Strings::narrow(status.toString());
        return StepText(contentOf(scratch("part.stp")));
    }
};

TEST_F(StepAssembliesTest, OccurrencesLieWhereTheFileSaysWhicheverOfTheTwoItTellsFirst)
{
    StepText step = onePart();
    const size_t inner = step.assembly("Inner"), outer = step.assembly("Outer");
    step.use(inner, StepText::kPart, 5);
    step.use(inner, StepText::kPart, 9, true);
    step.use(outer, inner, 100);
    step.use(outer, inner, 200, true);
    step.use(outer, StepText::kPart, 7);
    Document* document = open(write("assembly.stp", step.text()));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    const Component& root = *document->activeAsset()->components();
    ASSERT_EQ(root.children.size(), 1u);
    const Component& whole = *root.children.front();
    EXPECT_EQ(whole.name, L"Outer");
    EXPECT_EQ(shiftsOf(whole), (std::vector{100, 200, 7}));
    ASSERT_EQ(whole.children.size(), 3u);
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(whole.children[i]->name, L"Inner");
        EXPECT_EQ(shiftsOf(*whole.children[i]), (std::vector{5, 9}));
        EXPECT_EQ(whole.children[i]->children.front()->body, whole.children[2]->body);
    }
    EXPECT_NEAR(volumeOf(*document->activeAsset()), 5 * 6, 1e-6);
}

TEST_F(StepAssembliesTest, WhatCanNotBeShownIsRefusedWithItsCause)
{
    const auto chain = [&](int levels, int uses) {
        StepText step = onePart();
        size_t last = StepText::kPart;
        for (int level = 0; level < levels; ++level) {
            const size_t next = step.assembly("Level" + std::to_string(level));
            for (int use = 0; use < uses; ++use)
                step.use(next, last, use);
            last = next;
        }
        return write("chain.stp", step.text());
    };
    expectFault(chain(10000, 1), "levels");
    expectFault(chain(31, 2), "so often");
    // As deep as real models are, and deeper.
    Document* document = open(chain(1000, 1));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    EXPECT_NEAR(volumeOf(*document->activeAsset()), 6, 1e-6);
}

TEST_F(StepAssembliesTest, OfAnAssemblyThatContainsItselfTheRestIsShown)
{
    enum Loop { Itself, OverAnother, OverAll };
    for (const Loop loop : {Itself, OverAnother, OverAll}) {
        SCOPED_TRACE(loop);
        StepText step = onePart();
        const size_t root = step.assembly("Root"), self = step.assembly("Ouroboros"),
                     other = step.assembly("Other");
        step.use(root, self, 100);
        step.use(self, StepText::kPart, 5);
        step.use(self, other, 10);
        step.use(other, StepText::kPart, 7);
        step.use(loop == Itself ? self : other, loop == OverAll ? root : self, 2);
        Document* document = open(write("loop" + std::to_string(loop) + ".stp", step.text()));
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        const std::string said = Strings::narrow(status.toString());
        EXPECT_NEAR(volumeOf(*document->activeAsset()), 2 * 6, 1e-6) << said;
        EXPECT_EQ(componentsOf(*document->activeAsset()).size(), 5u) << said;
        EXPECT_NE(said.find("lacks 1 placement"), std::string::npos) << said;
    }
}

TEST_F(StepAssembliesTest, ThousandsOfOccurrencesKeepTheirPlacesAndColours)
{
    constexpr int kCount = 5000;
    StepText step = onePart();
    const size_t assembly = step.assembly("All");
    for (int i = 0; i < kCount; ++i)
        step.use(assembly, StepText::kPart, 2 * i);
    Document* document = open(write("many.stp", step.text()));
    ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
    Asset* asset = document->activeAsset();
    const auto& parts = asset->components()->children.front()->children;
    ASSERT_EQ(parts.size(), size_t(kCount));
    // On both sides of where the writer starts again.
    const std::vector<size_t> coloured{0, 4095, 4096, kCount - 1};
    std::vector<ObjectPath> paths;
    for (const size_t i : coloured)
        paths.push_back({.component = parts[i]->id});
    EditRequest* request = EditRequest::make(asset, L"Colour", ColourEdit{paths, Colour{0, 0, 1}});
    EXPECT_TRUE(request->execute(asset, status)) << Strings::narrow(status.toString());
    request->destroy();
    ASSERT_TRUE(save(asset, scratch("again.stp"))) << Strings::narrow(status.toString());
    Document* again = open(scratch("again.stp"));
    ASSERT_NE(again, nullptr) << Strings::narrow(status.toString());
    const Component& read = *again->activeAsset()->components()->children.front();
    EXPECT_EQ(read.name, L"All");
    EXPECT_EQ(shiftsOf(read), shiftsOf(*asset->components()->children.front()));
    std::vector<size_t> blue;
    for (size_t i = 0; i < read.children.size(); ++i)
        if (read.children[i]->colour && read.children[i]->colour->b > 0.99F)
            blue.push_back(i);
    EXPECT_EQ(blue, coloured);
}
