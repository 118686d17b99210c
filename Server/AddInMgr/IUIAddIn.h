#pragma once

#include "Server/AddInMgr/IAddIn.h"

namespace Vs {

/// An add-in that brings commands and windows.
class IUIAddIn : public Implements<IUIAddIn, IAddIn>
{
public:
    explicit IUIAddIn(std::wstring name = {}) : m_name(std::move(name)) {}
    std::wstring toString() override { return m_name; }
    void load() override {}
    void unload(bool) override {}

private:
    std::wstring m_name;
};

} // namespace Vs
