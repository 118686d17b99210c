// Random sequences of document and asset lines, checked after each line against a plain model of what should
// be open, listed, current and dirty. The seed is printed; QUILLET_SEED repeats a run.

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/Commands/CommandsProgram.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <random>

using namespace Vu;
using namespace Vu::Commands;

namespace {

/// The buttons of "Save changes?".
enum Answer { kSave = 0, kDontSave = 1, kCancel = 2 };

struct ModelDocument
{
    const Vs::Document* real;
    std::wstring path;
    std::vector<bool> dirty; ///< One for each asset.
    size_t active = 0;

    bool isDirty() const { return std::find(dirty.begin(), dirty.end(), true) != dirty.end(); }
    void clean() { dirty.assign(dirty.size(), false); }
};

struct Place
{
    const Vs::Document* document;
    size_t asset;
    bool operator==(const Place& other) const { return document == other.document && asset == other.asset; }
};

/// What a file holds: the count of assets and the active one.
struct ModelFile
{
    size_t assets;
    size_t active;
};

struct Model
{
    std::vector<ModelDocument> documents;
    std::vector<Place> listed;
    std::optional<Place> current;
    bool shown = false; ///< The asset shell is on top, not the home screen.
    std::map<std::wstring, ModelFile> files;

    ModelDocument* find(const Vs::Document* real)
    {
        for (ModelDocument& document : documents)
            if (document.real == real)
                return &document;
        return nullptr;
    }
    ModelDocument* active() { return shown && current ? find(current->document) : nullptr; }
    void list(Place place)
    {
        if (std::find(listed.begin(), listed.end(), place) == listed.end())
            listed.push_back(place);
    }
    void show(Place place)
    {
        list(place);
        current = place;
        shown = true;
    }
    void close(const Vs::Document* real)
    {
        std::erase_if(documents, [&](const ModelDocument& document) { return document.real == real; });
        std::erase_if(listed, [&](const Place& place) { return place.document == real; });
        if (current && current->document == real)
            current.reset();
    }
    void save(ModelDocument& document, const std::wstring& path)
    {
        document.path = path;
        document.clean();
        files[path] = {document.dirty.size(), document.active};
    }
};

class RandomDocumentsTest : public CommandsTests::WithProgram
{
public:
    void SetUp() override
    {
        WithProgram::SetUp();
        const char* given = std::getenv("QUILLET_SEED");
        m_seed = given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device()();
        m_random.seed(m_seed);
        boost::filesystem::remove_all(scratch(L"random"));
        boost::filesystem::create_directories(scratch(L"random"));
    }

    size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(m_random); }
    std::wstring freshPath() { return scratch(L"random/" + std::to_wstring(++m_files) + L".vlra"); }
    static const Vs::Document* newest() { return Vs::DocumentMgr::get()->document(documents() - 1); }

    void create()
    {
        const bool replaces = below(2) == 0;
        const ModelDocument* previous = m_model.active();
        const Vs::Document* gone = replaces && previous ? previous->real : nullptr;
        answer(replaces ? L"Document.Create VeloraAssetType" : L"VuCommands.NewSingleDocumentCmd");
        m_model.documents.push_back({newest(), L"", {false}});
        m_model.show({newest(), 0});
        if (gone)
            m_model.close(gone);
    }
    void insert()
    {
        ModelDocument* document = m_model.active();
        if (!document) {
            failure(L"Asset.Create VeloraAssetType");
            return;
        }
        answer(L"Asset.Create VeloraAssetType");
        document->dirty.push_back(true);
        m_model.show({document->real, document->dirty.size() - 1});
    }
    void markDirty()
    {
        ModelDocument* document = m_model.active();
        if (document)
            document->dirty[m_model.current->asset] = true;
        EXPECT_EQ(run(L"Asset.MarkDirty").first, document ? 0u : 1u);
    }
    void save()
    {
        ModelDocument* document = m_model.active();
        const bool as = below(2) == 0;
        if (!document) {
            failure(as ? L"Document.SaveAs x" : L"Document.Save x");
            return;
        }
        const bool named = as || document->path.empty();
        const std::wstring path = named ? freshPath() : document->path;
        answer(as ? L"Document.SaveAs " + path : named ? L"Document.Save " + path : L"Document.Save");
        m_model.save(*document, path);
    }
    void open()
    {
        if (m_model.files.empty())
            return;
        const auto& [path, file] =
            *std::next(m_model.files.begin(), static_cast<long>(below(m_model.files.size())));
        answer(L"VuCommands.OpenDocumentCmd " + path);
        ModelDocument* previous = m_model.active();
        const Vs::Document* gone = previous ? previous->real : nullptr;
        auto found = std::find_if(
            m_model.documents.begin(), m_model.documents.end(),
            [&, &wanted = path](const ModelDocument& document) { return document.path == wanted; });
        if (found != m_model.documents.end() && found->real == gone)
            return;
        if (found == m_model.documents.end()) {
            m_model.documents.push_back({newest(), path, std::vector<bool>(file.assets, false), file.active});
            found = m_model.documents.end() - 1;
        }
        for (size_t i = 0; i < found->dirty.size(); ++i)
            m_model.list({found->real, i});
        m_model.show({found->real, found->active});
        if (gone)
            m_model.close(gone);
    }
    void activate()
    {
        for (const ModelDocument& document : m_model.documents)
            if (!document.path.empty() && below(2) == 0) {
                answer(L"Document.Activate " + document.path);
                m_model.show({document.real, document.active});
                return;
            }
    }
    void cycle()
    {
        answer(L"VuCommands.CycleOpenDocumentsCmd");
        if (!m_model.current)
            return;
        const ModelDocument* document = m_model.find(m_model.current->document);
        const size_t index = static_cast<size_t>(document - m_model.documents.data());
        const ModelDocument& next = m_model.documents[(index + 1) % m_model.documents.size()];
        m_model.show({next.real, next.active});
    }
    void step()
    {
        const bool forward = below(2) == 0;
        if (!m_model.shown || !m_model.current)
            return;
        const auto at = std::find(m_model.listed.begin(), m_model.listed.end(), *m_model.current);
        // The lists don't wrap, and the line doesn't ask whether there is a neighbour.
        if (forward ? at + 1 >= m_model.listed.end() : at == m_model.listed.begin())
            return;
        answer(forward ? L"VuCommands.NextAssetCmd" : L"VuCommands.PreviousAssetCmd");
        m_model.current = forward ? *(at + 1) : *(at - 1);
    }
    /// Whether the document may close, after the question that it may have come with.
    bool agreed(ModelDocument& document, Answer button)
    {
        if (!document.isDirty())
            return true;
        m_model.show({document.real, document.active});
        if (button == kSave && !document.path.empty())
            m_model.save(document, document.path);
        return button == kSave ? !document.path.empty() : button == kDontSave;
    }
    void close()
    {
        const auto button = static_cast<Answer>(below(3));
        answerBoxes(button);
        ModelDocument* document = m_model.active();
        if (!document) {
            failure(L"Document.Close");
            return;
        }
        answer(L"Document.Close");
        if (!agreed(*document, button))
            return;
        m_model.close(document->real);
        m_model.shown = false;
    }
    void closeAsset()
    {
        const auto button = static_cast<Answer>(below(3));
        answerBoxes(button);
        ModelDocument* document = m_model.active();
        if (!document) {
            failure(L"Asset.Close");
            return;
        }
        const Place closing = *m_model.current;
        answer(L"Asset.Close");
        if (document->dirty.size() > 1)
            document->active = closing.asset == 0 ? 1 : 0;
        const auto others = [&](const Place& place) {
            return place.document == closing.document && place.asset != closing.asset;
        };
        const bool keptByDirty =
            std::any_of(m_model.listed.begin(), m_model.listed.end(),
                        [&](const Place& place) { return others(place) && document->dirty[place.asset]; });
        if (!keptByDirty && !agreed(*document, button))
            return;
        // The question shows the document's active asset; what closes then is the one that was meant.
        std::erase(m_model.listed, closing);
        if (m_model.current == closing)
            m_model.current.reset();
        m_model.shown = false;
        if (std::none_of(m_model.listed.begin(), m_model.listed.end(), others))
            m_model.close(closing.document);
    }
    void closeAll()
    {
        if (below(4) != 0)
            return;
        answerBoxes(kDontSave);
        EXPECT_EQ(run(L"Document.CloseAll").first, m_model.documents.empty() ? 1u : 0u);
        if (m_model.documents.empty())
            return;
        m_model.documents.clear();
        m_model.listed.clear();
        m_model.current.reset();
        m_model.shown = false;
    }

    void check()
    {
        const Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
        ASSERT_EQ(manager->documents(), m_model.documents.size());
        for (unsigned i = 0; i < manager->documents(); ++i) {
            const Vs::Document* real = manager->document(i);
            const ModelDocument& document = m_model.documents[i];
            ASSERT_EQ(real, document.real);
            ASSERT_EQ(real->path(), document.path);
            ASSERT_EQ(real->assets(), document.dirty.size());
            ASSERT_EQ(real->activeAsset(), real->asset(static_cast<unsigned>(document.active)));
            for (unsigned k = 0; k < real->assets(); ++k)
                ASSERT_EQ(real->asset(k)->isDirty(false), document.dirty[k]);
        }
        std::vector<Place> listed;
        for (const AssetSession* session : SharedWorkflows::activeAssetShell()->assetSessions())
            listed.push_back(placeOf(session));
        ASSERT_TRUE(listed == m_model.listed);
        const AssetSession* session = activeSession();
        ASSERT_EQ(session != nullptr, m_model.active() != nullptr);
        if (session) {
            ASSERT_TRUE(placeOf(session) == *m_model.current);
        }
    }
    static Place placeOf(const AssetSession* session)
    {
        const Vs::Document* document = session->asset()->document();
        size_t index = 0;
        while (document->asset(static_cast<unsigned>(index)) != session->asset())
            ++index;
        return {document, index};
    }

    Model m_model;
    unsigned m_seed = 0;
    std::mt19937 m_random;
    int m_files = 0;
};

TEST_F(RandomDocumentsTest, WhatIsOpenCurrentAndDirtyIsWhatAPlainModelSays)
{
    std::cout << "QUILLET_SEED=" << m_seed << std::endl;
    using Operation = void (RandomDocumentsTest::*)();
    struct Row
    {
        const char* name;
        Operation run;
    };
    static constexpr Row kOperations[] = {
        {"create", &RandomDocumentsTest::create},       {"insert", &RandomDocumentsTest::insert},
        {"markDirty", &RandomDocumentsTest::markDirty}, {"save", &RandomDocumentsTest::save},
        {"open", &RandomDocumentsTest::open},           {"activate", &RandomDocumentsTest::activate},
        {"cycle", &RandomDocumentsTest::cycle},         {"step", &RandomDocumentsTest::step},
        {"close", &RandomDocumentsTest::close},         {"closeAsset", &RandomDocumentsTest::closeAsset},
        {"closeAll", &RandomDocumentsTest::closeAll},
    };
    constexpr int kSteps = 400;
    std::string trail;
    for (int i = 0; i < kSteps && !HasFatalFailure(); ++i) {
        const Row& operation = kOperations[below(std::size(kOperations))];
        trail += std::string(operation.name) + ' ';
        SCOPED_TRACE("seed " + std::to_string(m_seed) +
                     ", last of: " + trail.substr(trail.size() > 300 ? trail.size() - 300 : 0));
        (this->*operation.run)();
        check();
    }
}

} // namespace
