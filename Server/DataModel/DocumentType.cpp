#include "Server/DataModel/DocumentType.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/DocumentMgr.h"

namespace Vs {

DocumentType::~DocumentType()
{
    require(DocumentMgr::get()->documentType(m_identifier) != this,
            "a document type is unregistered before it goes");
}

} // namespace Vs
