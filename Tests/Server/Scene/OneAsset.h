#pragma once

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Tests/Support/Process.h"

#include <gtest/gtest.h>
#include <utility>

namespace SceneTests {

/// An empty asset in its own document.
class OneAsset : public testing::Test
{
protected:
    OneAsset()
    {
        EXPECT_TRUE(Vs::DocumentMgr::get()->registerDocumentType(&m_documentType));
        EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(&m_assetType));
        Vs::Status status;
        take(Vs::DocumentMgr::get()->create(&m_assetType, status));
    }
    ~OneAsset() override
    {
        Vs::DocumentMgr::get()->close(m_document);
        Vs::AssetTypeMgr::get()->unregisterType(&m_assetType);
        Vs::DocumentMgr::get()->unregisterDocumentType(&m_documentType);
    }

    /// Saves the document, closes it and opens its file.
    void reopen()
    {
        Vs::Status status;
        const boost::filesystem::path path = m_folder.path() / "saved.scenetest";
        ASSERT_TRUE(m_document->saveAs(path.wstring(), status)) << testing::PrintToString(status.toString());
        Vs::DocumentMgr::get()->close(std::exchange(m_document, nullptr));
        take(Vs::DocumentMgr::get()->open(path.wstring(), status));
    }

    Vs::Asset* asset = nullptr;
    Vs::Scene::SceneAssetAdapter* scene = nullptr;

private:
    void take(Vs::Document* document)
    {
        m_document = document;
        ASSERT_TRUE(document);
        asset = document->activeAsset();
        scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(asset->adapter());
    }

    TestSupport::ScratchFolder m_folder;
    Vs::DocumentType m_documentType{"SceneTestDocument", L"Scene test", L".scenetest"};
    Vs::AssetType m_assetType{"SceneTestAsset", L"Scene test", "SceneTestDocument"};
    Vs::Document* m_document = nullptr;
};

} // namespace SceneTests
