#pragma once

#include "Server/Itemhub/Private/Transport.h"

namespace Vs::Itemhub {

/// Signs in to services over HTTP.
class Transport : public ItemTransport
{
public:
    std::shared_ptr<ItemStore> store(const Access& access,
                                     std::function<void(const Access&)> keeper) override;
    Access signInByPassword(const Access& where, const std::string& account, const std::string& password,
                            const Watch& watch) override;
    Access signInByBrowser(const Access& where, const std::function<bool(const std::string&)>& open,
                           const Watch& watch) override;
    std::string sha256(const std::string& file, const Watch& watch) override;
    void keep(const std::string& key, const Access& access) override;
    std::optional<Access> kept(const std::string& key) override;
    void forget(const std::string& key) override;
};

} // namespace Vs::Itemhub

extern "C" Vs::Itemhub::ItemTransport* quilletItemTransport();
