#include "tools/demoservice/requests/signature.h"

#include "tools/demoservice/base/unicode.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <array>

namespace demo {

namespace {

std::string smallHex(const unsigned char *bytes, std::size_t count)
{
    static const char *const digits = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text.push_back(digits[bytes[i] >> 4U]);
        text.push_back(digits[bytes[i] & 0x0FU]);
    }
    return text;
}

} // namespace

std::string stringToSign(const SignedValues &values, const std::string &secret)
{
    return latin1FromUtf8("tenantId=" + values.tenant + "&x-ca-key=" + values.key
                          + "&x-ca-nonce=" + values.nonce + "&x-ca-secret=" + secret
                          + "&x-ca-timestamp=" + values.timestamp);
}

std::string signatureOf(const SignedValues &values, const std::string &secret)
{
    const std::string message = stringToSign(values, secret);
    const std::string hmacKey = latin1FromUtf8(secret);
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    const unsigned char *const done
        = HMAC(EVP_sha256(), hmacKey.data(), static_cast<int>(hmacKey.size()),
               reinterpret_cast<const unsigned char *>(message.data()), message.size(),
               digest.data(), &length);
    return done == nullptr ? std::string() : smallHex(digest.data(), length);
}

bool sameText(const std::string &one, const std::string &other)
{
    return one.size() == other.size() && CRYPTO_memcmp(one.data(), other.data(), one.size()) == 0;
}

} // namespace demo
