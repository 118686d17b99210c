#pragma once

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Translator.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// One design asset type with its document type, a separate cache folder, and no documents left open.
class DataModelTest : public testing::Test
{
protected:
    DataModelTest();
    ~DataModelTest() override;

    Vs::Asset* newAsset();
    /// A red box of 10 by 20 by 30 mm with a corner at the origin, and, beside it, a rotated green cylinder,
    /// 10 mm thick and 20 mm long.
    Vs::Asset* boxAndCylinder();
    /// Opens a foreign file; null on failure.
    Vs::Document* open(const std::wstring& path);
    /// Opens a file that can't be opened: checks that there is one message with the file and the cause, and
    /// that nothing stays half open.
    void expectFault(const std::wstring& path, const std::string& cause);
    using SetOptions = std::function<void(Vs::TranslatorSaveOptions&)>;
    bool save(Vs::Asset* asset, const std::wstring& path, const SetOptions& set = {});
    std::wstring scratch(const std::string& name) const;
    std::wstring write(const std::string& name, const std::string& content) const;

    Vs::Status status; ///< Of the last opening or saving.
    TestSupport::ScratchFolder folder;
};

using TestSupport::contentOf;
using TestSupport::overwrite;

/// All components below the root, parents first.
std::vector<const Vs::Component*> componentsOf(const Vs::Asset& asset);
/// The part with this name that has a body; null if there is none.
const Vs::Component* partNamed(const Vs::Asset& asset, const std::wstring& name);
/// The sum over all occurrences, in mm³; fails the test if one can't be measured.
double volumeOf(const Vs::Asset& asset);
double areaOf(const Vs::Asset& asset);
size_t trianglesOf(const Vs::Asset& asset);
/// Everything that users can see of the model, as text: names, placements, colours, sizes.
std::string digestOf(const Vs::Asset& asset);
