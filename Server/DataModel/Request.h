#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Status.h"

#include <string>

namespace Vs {

class Asset;

/// A change of an asset, told as what is wanted. Runs inside a transaction: it happens as a whole or not at
/// all.
class Request : public Implements<Request>
{
public:
    explicit Request(std::wstring name) : m_name(std::move(name)) {}

    /// The name of the undo step.
    const std::wstring& name() const { return m_name; }

    /// Opens a transaction, runs `onExecute`, and commits if that left the status without an error. An
    /// exception becomes an error of the status. Returns whether the change was made.
    bool execute(Asset* asset, Status& status);
    /// Ends a request that was made on the heap for one use.
    void destroy() { delete this; }

protected:
    /// Makes the change through the operations of ModelBuilder and its like.
    virtual void onExecute(Asset& asset, Status& status) = 0;

private:
    std::wstring m_name;
};

} // namespace Vs
