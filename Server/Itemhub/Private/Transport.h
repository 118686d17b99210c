#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Vs::Itemhub {

/// The interface of the transport's library. `quilletItemTransport` (extern "C") returns its single
/// object. All functions fail as ItemStore does. Any thread.
class ItemTransport
{
public:
    virtual ~ItemTransport() = default;

    /// Loads the library on the first call, which needs Qt's application object. ItemhubException of the
    /// kind Local if that fails.
    [[nodiscard]] static ItemTransport& get();

    /// Without prompting. `keeper` receives renewed credentials, on an arbitrary thread.
    [[nodiscard]] virtual std::shared_ptr<ItemStore> store(const Access& access,
                                                           std::function<void(const Access&)> keeper) = 0;
    [[nodiscard]] virtual Access signInByPassword(const Access& where, const std::string& account,
                                                  const std::string& password, const Watch& watch) = 0;
    /// Calls `open` with an address, and waits until the user has finished there, for at most 20 minutes.
    [[nodiscard]] virtual Access signInByBrowser(const Access& where,
                                                 const std::function<bool(const std::string&)>& open,
                                                 const Watch& watch) = 0;

    /// For a local file, in hexadecimal digits.
    [[nodiscard]] virtual std::string sha256(const std::string& file, const Watch& watch) = 0;

    /// The desktop's keyring. If none is running, they fail with ItemhubException of the kind Local.
    virtual void keep(const std::string& key, const Access& access) = 0;
    [[nodiscard]] virtual std::optional<Access> kept(const std::string& key) = 0;
    virtual void forget(const std::string& key) = 0;
};

} // namespace Vs::Itemhub
