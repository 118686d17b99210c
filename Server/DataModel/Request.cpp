#include "Server/DataModel/Request.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Transaction.h"

#include <exception>

namespace Vs {

bool Request::execute(Asset* asset, Status& status)
{
    if (!asset) {
        status.addError(m_name + L": there is no model to change.");
        return false;
    }
    Status own;
    try {
        Transaction transaction(asset, m_name);
        onExecute(*asset, own);
        if (own.isOk())
            transaction.commit();
    } catch (const std::exception& error) {
        own.addError(m_name + L": " + Strings::widen(error.what()));
    }
    status.merge(own);
    return own.isOk();
}

} // namespace Vs
