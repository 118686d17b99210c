#include "Tests/UI/Base/Fixture.h"

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Tests/UI/Restore.h"
#include "UI/Base/Host.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

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

} // namespace

UiTest::UiTest()
{
    static const TestSupport::ScratchFolder profile;
    static const bool set = (Vs::PathInfo::profileDirectory(profile.path()), true);
    static_cast<void>(set);
    Vu::installHost();
    Vu::Application::testing(true);
    Vu::SessionMgr::get();
    EXPECT_TRUE(Vs::DocumentMgr::get()->registerDocumentType(&documentType()));
    EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(&assetType()));
}

UiTest::~UiTest()
{
    Vu::MessageBox::responder(nullptr);
    Vu::FileDialog::responder(nullptr);
    Vu::Application::get()->flushDeferredTasks();
    Vu::SessionMgr::get()->deactivate();
    Vu::WorkspaceMgr::get()->closeAll();
    while (Vs::DocumentMgr::get()->documents() > 0)
        Vs::DocumentMgr::get()->close(Vs::DocumentMgr::get()->document(0u));
    UiTests::restore();
    Vs::AssetTypeMgr::get()->unregisterType(&assetType());
    Vs::DocumentMgr::get()->unregisterDocumentType(&documentType());
}

Vs::Asset* UiTest::newAsset()
{
    Vs::Status status;
    Vs::Document* document = Vs::DocumentMgr::get()->create(&assetType(), status);
    return document ? document->activeAsset() : nullptr;
}

std::wstring UiTest::write(const std::string& name, const std::string& content) const
{
    return folder.write(name, content).wstring();
}

class FunctionCommand : public Vu::SimpleCommand
{
public:
    FunctionCommand(FunctionCommandDef* definition, Vu::CommandContext* context)
        : SimpleCommand(definition, context)
    {
    }
    void onExecute(Vs::Status&) override
    {
        static_cast<FunctionCommandDef*>(commandDefinition())->m_action(*commandContext());
    }
};

FunctionCommandDef::FunctionCommandDef(const wchar_t* key, std::function<void(Vu::CommandContext&)> action)
    : InfoHolder{Vu::Info(key, key, nullptr)}, CommandDefinition(&record), m_action(std::move(action))
{
}

Vu::CommandBase* FunctionCommandDef::onCreateCommand(Vu::CommandContext* context)
{
    return new FunctionCommand(this, context);
}
