#pragma once

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/UI/Base/Command/Recorder.h"

#include <gtest/gtest.h>

namespace CommandTest {

/// Adds a box of some edge to the model; an edge of 0 adds none.
class AddBox : public Vs::Request
{
public:
    explicit AddBox(double edge) : Request(L"Box"), m_edge(edge) {}

protected:
    void onExecute(Vs::Asset& asset, Vs::Status& status) override
    {
        Vs::ModelBuilder(&asset).box(m_edge, m_edge, m_edge, {}, status);
    }

private:
    double m_edge;
};

/// A session on a real asset.
class WithAsset : public testing::Test
{
protected:
    void SetUp() override
    {
        EXPECT_TRUE(Vs::DocumentMgr::get()->registerDocumentType(&documentType()));
        EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(&assetType()));
        Vs::Document* document = Vs::DocumentMgr::get()->create(&assetType(), status);
        ASSERT_NE(document, nullptr);
        asset = document->activeAsset();
        host.assetOfSessions = asset;
    }
    void TearDown() override
    {
        session.terminateAll(Vu::ETerminationReason::Cancel);
        while (Vs::DocumentMgr::get()->documents() > 0)
            Vs::DocumentMgr::get()->close(Vs::DocumentMgr::get()->document(0u));
        Vs::AssetTypeMgr::get()->unregisterType(&assetType());
        Vs::DocumentMgr::get()->unregisterDocumentType(&documentType());
    }

    size_t boxes() const { return asset->components()->children.size(); }

    Log log;
    Host host;
    Vu::CommandMgr session{Host::session(1)};
    Vs::Asset* asset = nullptr;
    Vs::Status status;

private:
    static Vs::DocumentType& documentType()
    {
        static Vs::DocumentType type("CommandTestDocType", L"Design", L".ctd");
        return type;
    }
    static Vs::AssetType& assetType()
    {
        static Vs::AssetType type("CommandTestAssetType", L"Design", "CommandTestDocType");
        return type;
    }
};

} // namespace CommandTest
