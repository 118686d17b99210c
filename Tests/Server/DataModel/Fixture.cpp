#include "Tests/Server/DataModel/Fixture.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Body/BodyProperties.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"

#include <algorithm>
#include <numbers>
#include <sstream>

namespace {

Vs::DocumentType& documentType()
{
    static Vs::DocumentType type("TestDocType", L"Test Design", L".tdsn");
    return type;
}

Vs::AssetType& assetType()
{
    static Vs::AssetType type("TestAssetType", L"Design", "TestDocType");
    return type;
}

void add(const Vs::Component& component, std::vector<const Vs::Component*>& list)
{
    for (const auto& child : component.children) {
        list.push_back(child.get());
        add(*child, list);
    }
}

Vs::BodyProperties measured(const Vs::Component& component)
{
    Vs::Status status;
    const auto properties = Vs::bodyProperties(*component.body, status);
    EXPECT_TRUE(properties) << Vs::Strings::narrow(status.toString());
    return properties.value_or(Vs::BodyProperties{});
}

} // namespace

DataModelTest::DataModelTest()
{
    // The import cache is opened once for the process, so its folder must outlive the single test.
    static const TestSupport::ScratchFolder profile;
    static const bool set = (Vs::PathInfo::profileDirectory(profile.path()), true);
    static_cast<void>(set);
    EXPECT_TRUE(Vs::DocumentMgr::get()->registerDocumentType(&documentType()));
    EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(&assetType()));
}

DataModelTest::~DataModelTest()
{
    while (Vs::DocumentMgr::get()->documents() > 0)
        Vs::DocumentMgr::get()->close(Vs::DocumentMgr::get()->document(0u));
    Vs::AssetTypeMgr::get()->unregisterType(&assetType());
    Vs::DocumentMgr::get()->unregisterDocumentType(&documentType());
}

Vs::Asset* DataModelTest::newAsset()
{
    Vs::Document* document = Vs::DocumentMgr::get()->create(&assetType(), status);
    return document ? document->activeAsset() : nullptr;
}

Vs::Asset* DataModelTest::boxAndCylinder()
{
    Vs::Asset* asset = newAsset();
    Vs::ModelBuilder builder(asset);
    builder.box(10, 20, 30, {{}, L"Red box", Vs::Colour{1, 0, 0, 1}}, status);
    const GkMatrix3d placement =
        GkMatrix3d::translation({50, 0, 0}) * GkMatrix3d::rotation(std::numbers::pi / 2, {1, 0, 0});
    builder.cylinder(5, 20, {placement, L"Turned cylinder", Vs::Colour{0, 0.6f, 0, 1}}, status);
    return asset;
}

Vs::Document* DataModelTest::open(const std::wstring& path)
{
    status.clear();
    Vs::TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    Vs::Translator* translator = recognizer.translator(path);
    if (!translator)
        return Vs::DocumentMgr::get()->open(path, status);
    const auto options = translator->createOpenOptions();
    options->fileName(path);
    Vs::TranslatorContext context;
    const bool opened = translator->open(*options, context, status);
    EXPECT_EQ(opened, context.document() != nullptr);
    return context.document();
}

void DataModelTest::expectFault(const std::wstring& path, const std::string& cause)
{
    const unsigned before = Vs::DocumentMgr::get()->documents();
    EXPECT_EQ(open(path), nullptr);
    const std::string text = Vs::Strings::narrow(status.toString());
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 0) << text;
    EXPECT_NE(text.find(Vs::Strings::narrow(path)), std::string::npos) << text;
    EXPECT_NE(text.find(cause), std::string::npos) << text;
    EXPECT_EQ(Vs::DocumentMgr::get()->documents(), before);
}

bool DataModelTest::save(Vs::Asset* asset, const std::wstring& path, const SetOptions& set)
{
    status.clear();
    Vs::TranslatorFileRecognizer recognizer("TestAssetType", true);
    recognizer.recognize();
    Vs::Translator* translator = recognizer.translator(path);
    const auto options = translator->createSaveOptions();
    options->fileName(path);
    if (set)
        set(*options);
    Vs::TranslatorContext context;
    context.asset(asset);
    return translator->save(*options, context, status);
}

std::wstring DataModelTest::scratch(const std::string& name) const
{
    return (folder.path() / name).wstring();
}

std::wstring DataModelTest::write(const std::string& name, const std::string& content) const
{
    return folder.write(name, content).wstring();
}

std::vector<const Vs::Component*> componentsOf(const Vs::Asset& asset)
{
    std::vector<const Vs::Component*> list;
    add(*asset.components(), list);
    return list;
}

const Vs::Component* partNamed(const Vs::Asset& asset, const std::wstring& name)
{
    for (const Vs::Component* component : componentsOf(asset))
        if (component->name == name && component->body)
            return component;
    return nullptr;
}

double volumeOf(const Vs::Asset& asset)
{
    double sum = 0;
    for (const Vs::Component* component : componentsOf(asset))
        sum += component->body ? measured(*component).volume : 0;
    return sum;
}

double areaOf(const Vs::Asset& asset)
{
    double sum = 0;
    for (const Vs::Component* component : componentsOf(asset))
        sum += component->body ? measured(*component).area : 0;
    return sum;
}

size_t trianglesOf(const Vs::Asset& asset)
{
    size_t sum = 0;
    for (const Vs::Component* component : componentsOf(asset))
        sum += component->body ? component->body->mesh()->triangles.size() / 3 : 0;
    return sum;
}

std::string digestOf(const Vs::Asset& asset)
{
    std::ostringstream text;
    for (const Vs::Component* component : componentsOf(asset)) {
        text << component->id << ' ' << Vs::Strings::narrow(component->name.text());
        for (const auto& row : component->placement.matrix().entry)
            for (const double value : row)
                text << ' ' << value + 0.0; // no negative zero
        if (component->colour)
            text << " * " << component->colour->r << ' ' << component->colour->g << ' '
                 << component->colour->b;
        if (component->body) {
            const Vs::Colour colour = component->body->colour();
            text << " | " << colour.r << ' ' << colour.g << ' ' << colour.b << ' ' << colour.a << " | "
                 << measured(*component).volume << ' ' << component->body->mesh()->triangles.size();
            for (const Vs::BodyMesh::Face& face : component->body->mesh()->faces)
                text << ' ' << face.colour;
            for (const Vs::Finish& finish : component->body->mesh()->finishes)
                text << " + " << finish.metallic << ' ' << finish.roughness << ' ' << finish.emissive[0];
        }
        text << '\n';
    }
    return text.str();
}
