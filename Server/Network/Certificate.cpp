#include "Server/Network/Certificate.h"

#include <array>
#include <curl/curl.h>
#include <openssl/ssl.h>

namespace Vs::Network {

namespace {

std::string fingerprintOf(const X509* certificate)
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
    unsigned int count = 0;
    if (!certificate || X509_digest(certificate, EVP_sha256(), bytes.data(), &count) != 1)
        return {};
    static constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text;
    for (unsigned int i = 0; i < count; ++i) {
        text += i ? ":" : "";
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

/// Called for each certificate of the server's chain, and for each error.
int note(int isGood, X509_STORE_CTX* store)
{
    const auto* const ssl =
        static_cast<SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
    auto& seen = *static_cast<Certificate*>(SSL_CTX_get_app_data(SSL_get_SSL_CTX(ssl)));
    if (seen.fingerprint.empty())
        seen.fingerprint = fingerprintOf(X509_STORE_CTX_get0_cert(store));
    if (!isGood)
        seen.fault = X509_verify_cert_error_string(X509_STORE_CTX_get_error(store));
    return isGood;
}

CURLcode onContext(CURL*, void* context, void* certificate)
{
    auto* const ssl = static_cast<SSL_CTX*>(context);
    SSL_CTX_set_app_data(ssl, certificate);
    SSL_CTX_set_verify(ssl, SSL_CTX_get_verify_mode(ssl), note);
    return CURLE_OK;
}

} // namespace

void Certificate::watch(void* handle)
{
    fault.clear();
    fingerprint.clear();
    curl_easy_setopt(handle, CURLOPT_SSL_CTX_FUNCTION, onContext);
    curl_easy_setopt(handle, CURLOPT_SSL_CTX_DATA, this);
}

} // namespace Vs::Network
