#include "UI/Base/Program/VectorPage.h"

#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"

#include <stdexcept>

namespace Vu {

bool writePage(const VectorPage& page, const std::wstring& path, Vs::Status& status)
{
    using Write = bool (*)(const VectorPage& page, const std::wstring& path, Vs::Status& status);
    try {
        return Vs::SiblingLibrary("libVuPage10.so").function<Write>("quilletWritePage")(page, path, status);
    } catch (const std::runtime_error& error) {
        status.addError(Vs::Strings::widen(error.what()));
        return false;
    }
}

} // namespace Vu
