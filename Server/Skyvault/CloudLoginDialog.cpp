#include "Server/Skyvault/CloudLoginDialog.h"

namespace Vs {
namespace {

CloudLoginDialog::Asker& installed()
{
    static CloudLoginDialog::Asker asker;
    return asker;
}

} // namespace

void CloudLoginDialog::asker(Asker asker)
{
    installed() = std::move(asker);
}

bool CloudLoginDialog::canAsk()
{
    return static_cast<bool>(installed());
}

bool CloudLoginDialog::ask(ELoginMode mode)
{
    return installed() && installed()(mode);
}

} // namespace Vs
