// Random sequences of document and asset lines, checked after each line against a simple model of what should
// be open, listed, current and dirty.

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Support/Seed.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <set>

using namespace Vu;
using namespace Vu::Commands;

namespace {

/// The buttons of "Save changes?".
enum Answer { kSave = 0, kDontSave = 1, kCancel = 2 };

struct ModelAsset
{
    bool dirty = false;
    size_t parts = 0, undo = 0, redo = 0;
};

struct ModelDocument
{
    const Vs::Document* real;
    std::wstring path;
    std::wstring name;
    std::vector<ModelAsset> assets;
    std::vector<ModelAsset> hidden;
    size_t active = 0;

    bool isDirty() const
    {
        const auto dirty = [](const ModelAsset& asset) { return asset.dirty; };
        return std::any_of(assets.begin(), assets.end(), dirty) ||
               std::any_of(hidden.begin(), hidden.end(), dirty);
    }
    void clean()
    {
        for (auto* list : {&assets, &hidden})
            for (ModelAsset& asset : *list)
                asset.dirty = false;
    }
};

struct Place
{
    const Vs::Document* document;
    size_t asset;
    bool operator==(const Place& other) const { return document == other.document && asset == other.asset; }
};

/// The contents of a file: the parts of each asset, the number of hidden ones, and the active one.
struct ModelFile
{
    std::vector<size_t> parts;
    size_t hidden;
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
        if (ModelDocument* document = find(place.document))
            document->active = place.asset;
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
        if (path != document.path)
            document.name = boost::filesystem::path(path).stem().wstring();
        document.path = path;
        document.clean();
        ModelFile& file = files[path] = {{}, document.hidden.size(), document.active};
        for (const ModelAsset& asset : document.assets)
            file.parts.push_back(asset.parts);
    }
    bool isOpen(const std::wstring& path) const
    {
        return std::any_of(documents.begin(), documents.end(),
                           [&](const ModelDocument& document) { return document.path == path; });
    }
};

class RandomDocumentsTest : public CommandsTests::WithProgram
{
public:
    void SetUp() override
    {
        WithProgram::SetUp();
        boost::filesystem::remove_all(scratch(L"random"));
        boost::filesystem::create_directories(scratch(L"random"));
    }

    size_t below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(m_random); }
    std::wstring freshPath() { return scratch(L"random/" + std::to_wstring(++m_files) + L".vlra"); }
    const std::wstring& anyFile()
    {
        return std::next(m_model.files.begin(), static_cast<long>(below(m_model.files.size())))->first;
    }
    static const Vs::Document* newest() { return Vs::DocumentMgr::get()->document(documents() - 1); }

    void create()
    {
        const bool replaces = below(2) == 0;
        const ModelDocument* previous = m_model.active();
        const Vs::Document* gone = replaces && previous ? previous->real : nullptr;
        answer(replaces ? L"Document.Create VeloraAssetType" : L"VuCommands.NewSingleDocumentCmd");
        m_model.documents.push_back({newest(), L"", newest()->displayName(), std::vector<ModelAsset>(1), {}});
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
        if (below(3) == 0) {
            answer(L"Asset.Create TorvexAssetType /Hidden");
            document->hidden.push_back({.dirty = true});
            document->assets[document->active].dirty = true;
            return;
        }
        answer(L"Asset.Create VeloraAssetType");
        document->assets.push_back({.dirty = true});
        m_model.show({document->real, document->assets.size() - 1});
    }
    ModelAsset* currentAsset()
    {
        ModelDocument* document = m_model.active();
        return document ? &document->assets[m_model.current->asset] : nullptr;
    }
    void markDirty()
    {
        ModelAsset* asset = currentAsset();
        if (asset)
            asset->dirty = true;
        EXPECT_EQ(run(L"Asset.MarkDirty").first, asset ? 0u : 1u);
    }
    void addPart()
    {
        ModelAsset* asset = currentAsset();
        if (!asset)
            return;
        answer(L"Design.Box 1 2 3");
        *asset = {true, asset->parts + 1, asset->undo + 1, 0};
    }
    void undo()
    {
        ModelAsset* asset = currentAsset();
        if (!asset)
            return;
        const bool back = below(3) != 0;
        Vs::Asset* real = activeSession()->asset();
        size_t& steps = back ? asset->undo : asset->redo;
        EXPECT_EQ(back ? Vs::Transaction::undo(real) : Vs::Transaction::redo(real), steps > 0);
        if (steps == 0)
            return;
        --steps;
        ++(back ? asset->redo : asset->undo);
        asset->parts += back ? size_t(-1) : 1;
        asset->dirty = true;
    }
    void rename()
    {
        ModelDocument* document = m_model.active();
        const std::wstring name = L"Renamed" + std::to_wstring(++m_files);
        EXPECT_EQ(run(L"Document.Rename " + name).first, document ? 0u : 1u);
        if (document)
            document->name = name;
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
        std::wstring path = named ? freshPath() : document->path;
        // Now and then over a file that nobody has open.
        if (named && !m_model.files.empty() && below(3) == 0)
            if (const std::wstring& taken = anyFile(); !m_model.isOpen(taken))
                path = taken;
        const bool area = below(2) == 0;
        const std::wstring line =
            area ? (as ? L"Document.SaveAs" : L"Document.Save")
                 : (as ? L"VuCommands.SaveDocumentAsCmd" : L"VuCommands.SaveDocumentCmd");
        answer(named ? line + L" " + path : line);
        m_model.save(*document, path);
    }
    /// Into a missing folder, or over the file of another document.
    void failToSave()
    {
        ModelDocument* document = m_model.active();
        if (!document)
            return;
        std::wstring path = scratch(L"random/nowhere/x.vlra");
        for (const ModelDocument& other : m_model.documents)
            if (&other != document && !other.path.empty() && below(2) == 0)
                path = other.path;
        if (below(2) == 0) {
            failure(L"Document.SaveAs " + path);
            // They should be written whether they have changed or not.
            for (ModelAsset& asset : document->assets)
                asset.dirty = true;
        } else if (document->path.empty()) {
            failure(L"Document.Save " + path);
        }
    }
    void open()
    {
        if (m_model.files.empty())
            return;
        const std::wstring path = anyFile();
        const bool replaces = below(2) == 0;
        answer((replaces ? L"VuCommands.OpenDocumentCmd " : L"Document.Open ") + path);
        ModelDocument* previous = m_model.active();
        const Vs::Document* gone = replaces && previous ? previous->real : nullptr;
        auto found = std::find_if(m_model.documents.begin(), m_model.documents.end(),
                                  [&](const ModelDocument& document) { return document.path == path; });
        if (gone && found != m_model.documents.end() && found->real == gone)
            return;
        if (found == m_model.documents.end()) {
            const ModelFile& file = m_model.files[path];
            m_model.documents.push_back(
                {newest(), path, boost::filesystem::path(path).stem().wstring(), {}, {}, file.active});
            found = m_model.documents.end() - 1;
            for (const size_t parts : file.parts)
                found->assets.push_back({.parts = parts});
            found->hidden.resize(file.hidden);
        }
        if (replaces)
            for (size_t i = 0; i < found->assets.size(); ++i)
                m_model.list({found->real, i});
        m_model.show({found->real, found->active});
        if (gone)
            m_model.close(gone);
    }
    void failToOpen()
    {
        boost::filesystem::ofstream(scratch(L"random/noise.vlra")) << "noise";
        answerBoxes(0);
        for (const wchar_t* line : {L"VuCommands.OpenDocumentCmd ", L"Document.Open "})
            failure(line + scratch(L"random/noise.vlra"));
    }
    void activate()
    {
        ModelDocument* active = m_model.active();
        if (active && below(2) == 0) {
            const size_t asset = below(active->assets.size());
            answer(L"Asset.Activate " + active->real->asset(static_cast<unsigned>(asset))->name());
            m_model.show({active->real, asset});
            return;
        }
        for (const ModelDocument& document : m_model.documents)
            if (!document.path.empty() && below(2) == 0) {
                answer(L"Document.Activate " + document.path);
                m_model.show({document.real, document.active});
                return;
            }
    }
    void goHome()
    {
        answer(L"VuCommands.ManagementShellCmd");
        m_model.shown = false;
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
        // The lists don't wrap.
        if (forward ? at + 1 >= m_model.listed.end() : at == m_model.listed.begin()) {
            failure(forward ? L"VuCommands.NextAssetCmd" : L"VuCommands.PreviousAssetCmd");
            return;
        }
        answer(forward ? L"VuCommands.NextAssetCmd" : L"VuCommands.PreviousAssetCmd");
        m_model.show(forward ? *(at + 1) : *(at - 1));
    }
    /// Whether the document may close, after the question if there was one.
    bool agreed(ModelDocument& document, Answer button)
    {
        if (!document.isDirty())
            return true;
        m_model.show({document.real, document.active});
        if (button == kSave && !document.path.empty())
            m_model.save(document, document.path);
        return button == kSave ? !document.path.empty() : button == kDontSave;
    }
    Answer answerQuestions()
    {
        const auto button = static_cast<Answer>(below(3));
        answerBoxes(button);
        return button;
    }
    void close()
    {
        const Answer button = answerQuestions();
        ModelDocument* document = m_model.active();
        if (!document) {
            failure(L"Document.Close");
            return;
        }
        const bool tells = below(2) == 0;
        const unsigned code = run(tells ? L"Document.Close" : L"VuCommands.CloseDocumentCmd").first;
        const bool closes = agreed(*document, button);
        EXPECT_EQ(code, tells && !closes ? 1u : 0u);
        if (!closes)
            return;
        m_model.close(document->real);
        m_model.shown = false;
    }
    void closeAsset()
    {
        const Answer button = answerQuestions();
        ModelDocument* document = m_model.active();
        if (!document) {
            failure(L"Asset.Close");
            return;
        }
        const Place closing = *m_model.current;
        answer(L"Asset.Close");
        if (document->assets.size() > 1)
            document->active = closing.asset == 0 ? 1 : 0;
        const auto others = [&](const Place& place) {
            return place.document == closing.document && place.asset != closing.asset;
        };
        const bool keptByDirty =
            std::any_of(m_model.listed.begin(), m_model.listed.end(), [&](const Place& place) {
                return others(place) && document->assets[place.asset].dirty;
            });
        if (!keptByDirty && !agreed(*document, button))
            return;
        // The question shows the document's active asset; then the intended one closes.
        std::erase(m_model.listed, closing);
        if (m_model.current == closing)
            m_model.current.reset();
        m_model.shown = false;
        if (std::none_of(m_model.listed.begin(), m_model.listed.end(), others))
            m_model.close(closing.document);
    }
    /// One question after another, from the last document to the first; those refused stay.
    void closeEach()
    {
        if (below(4) != 0)
            return;
        const Answer button = answerQuestions();
        std::vector<const Vs::Document*> all;
        for (const ModelDocument& document : m_model.documents)
            all.insert(all.begin(), document.real);
        const unsigned code = run(L"Document.CloseAll").first;
        bool well = !all.empty();
        for (const Vs::Document* document : all)
            if (agreed(*m_model.find(document), button)) {
                m_model.close(document);
                m_model.shown = false;
            } else {
                well = false;
            }
        EXPECT_EQ(code, well ? 0u : 1u);
    }
    /// All questions first, in the order of a set; one refusal keeps all.
    void closeAll()
    {
        if (!m_model.active() || below(4) != 0)
            return;
        const Answer button = answerQuestions();
        std::set<const Vs::Document*> all;
        for (const ModelDocument& document : m_model.documents)
            all.insert(document.real);
        answer(L"VuCommands.CloseAllDocumentsCmd");
        for (const Vs::Document* document : all)
            if (!agreed(*m_model.find(document), button))
                return;
        for (const Vs::Document* document : all)
            m_model.close(document);
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
            ASSERT_EQ(real->displayName(), document.name);
            ASSERT_EQ(real->assets(), document.assets.size());
            ASSERT_EQ(real->hiddenAssets(), document.hidden.size());
            ASSERT_EQ(real->activeAsset(), real->asset(static_cast<unsigned>(document.active)));
            for (unsigned k = 0; k < real->assets(); ++k)
                checkAsset(*real->asset(k), document.assets[k]);
            for (unsigned k = 0; k < real->hiddenAssets(); ++k)
                checkAsset(*real->hiddenAsset(k), document.hidden[k]);
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
    static void checkAsset(const Vs::Asset& real, const ModelAsset& asset)
    {
        ASSERT_EQ(real.isDirty(false), asset.dirty);
        ASSERT_EQ(real.components() ? real.components()->children.size() : 0, asset.parts);
        ASSERT_EQ(Vs::Transaction::undoSteps(&real), asset.undo);
        ASSERT_EQ(Vs::Transaction::redoSteps(&real), asset.redo);
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
    std::mt19937 m_random{TestSupport::seed()};
    int m_files = 0;
};

TEST_F(RandomDocumentsTest, WhatIsOpenCurrentAndDirtyIsWhatAPlainModelSays)
{
    using Operation = void (RandomDocumentsTest::*)();
    struct Row
    {
        const char* name;
        Operation run;
    };
    static constexpr Row kOperations[] = {
        {"create", &RandomDocumentsTest::create},       {"insert", &RandomDocumentsTest::insert},
        {"markDirty", &RandomDocumentsTest::markDirty}, {"addPart", &RandomDocumentsTest::addPart},
        {"undo", &RandomDocumentsTest::undo},           {"rename", &RandomDocumentsTest::rename},
        {"save", &RandomDocumentsTest::save},           {"failToSave", &RandomDocumentsTest::failToSave},
        {"open", &RandomDocumentsTest::open},           {"failToOpen", &RandomDocumentsTest::failToOpen},
        {"activate", &RandomDocumentsTest::activate},   {"goHome", &RandomDocumentsTest::goHome},
        {"cycle", &RandomDocumentsTest::cycle},         {"step", &RandomDocumentsTest::step},
        {"close", &RandomDocumentsTest::close},         {"closeAsset", &RandomDocumentsTest::closeAsset},
        {"closeEach", &RandomDocumentsTest::closeEach}, {"closeAll", &RandomDocumentsTest::closeAll},
    };
    constexpr int kSteps = 400;
    std::string trail;
    for (int i = 0; i < kSteps && !HasFatalFailure(); ++i) {
        const Row& operation = kOperations[below(std::size(kOperations))];
        trail += std::string(operation.name) + ' ';
        SCOPED_TRACE("last of: " + trail.substr(trail.size() > 300 ? trail.size() - 300 : 0));
        (this->*operation.run)();
        check();
    }
}

} // namespace
