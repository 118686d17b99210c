#pragma once

#include "Server/Base/Object.h"

#include <string>
#include <utility>

namespace Vs {

/// What the maker of a step wants to find again with it: a name to be shown, and in a derived class what it
/// needs to go back to the step. Belongs to the step's transaction and goes with it.
class TransactionStepUserCache : public Implements<TransactionStepUserCache>
{
public:
    explicit TransactionStepUserCache(std::wstring name) : m_name(std::move(name)) {}
    const std::wstring& getCacheName() const { return m_name; }

private:
    std::wstring m_name;
};

} // namespace Vs
