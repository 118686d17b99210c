#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/ItemhubSignIn.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Vs::Itemhub {

/// What the transport's library gives. Its one object is found by `quilletItemTransport` (extern "C"). All of
/// it fails as ItemStore does. Any thread.
class ItemTransport
{
public:
    virtual ~ItemTransport() = default;

    /// Opens the library at the first call, which needs Qt's application object. ItemhubException of the kind
    /// Local if that fails.
    [[nodiscard]] static ItemTransport& get();

    /// Without asking anybody. `keeper` is told of renewed credentials, on whichever thread.
    [[nodiscard]] virtual std::shared_ptr<ItemStore> store(const Access& access,
                                                           std::function<void(const Access&)> keeper) = 0;
    [[nodiscard]] virtual Access signInByPassword(const Access& where, const std::string& account,
                                                  const std::string& password, const Watch& watch) = 0;
    /// Calls `open` with an address, and waits until the person has finished there, at most 20 minutes.
    [[nodiscard]] virtual Access signInByBrowser(const Access& where,
                                                 const std::function<bool(const std::string&)>& open,
                                                 const Watch& watch) = 0;

    /// Of a local file, in hexadecimal digits.
    [[nodiscard]] virtual std::string sha256(const std::string& file, const Watch& watch) = 0;

    /// The desktop's keyring. Where none runs, they fail with ItemhubException of the kind Local.
    virtual void keep(const std::string& key, const Access& access) = 0;
    [[nodiscard]] virtual std::optional<Access> kept(const std::string& key) = 0;
    virtual void forget(const std::string& key) = 0;
};

} // namespace Vs::Itemhub
