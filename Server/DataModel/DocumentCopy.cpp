#include "Server/DataModel/DocumentCopy.h"

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Native/DocumentSave.h"

namespace Vs {

bool saveCopy(Document& document, const std::wstring& path, Status& status)
{
    return DocumentSave::saveCopy(document, PathInfo::absolute(path).wstring(), status);
}

} // namespace Vs
