#pragma once

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Tests/Support/Process.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/SimpleCommand.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

/// A headless application with its own profile, one kind of document, and nothing left behind.
class UiTest : public testing::Test
{
protected:
    UiTest();
    ~UiTest() override;

    Vs::Asset* newAsset();
    /// Writes a file and returns its path.
    std::wstring write(const std::string& name, const std::string& content) const;

    TestSupport::ScratchFolder folder;
};

/// Comes before the definition among the bases, because that reads the record during construction.
struct InfoHolder
{
    Vu::Info record;
};

/// A one-shot command that calls a function.
class FunctionCommandDef : private InfoHolder, public Vu::CommandDefinition
{
public:
    FunctionCommandDef(const wchar_t* key, std::function<void(Vu::CommandContext&)> action);
    bool applicable = true;

protected:
    bool onIsApplicable(Vu::CommandContext*) const override { return applicable; }
    Vu::CommandBase* onCreateCommand(Vu::CommandContext* context) override;

private:
    friend class FunctionCommand;
    std::function<void(Vu::CommandContext&)> m_action;
};
