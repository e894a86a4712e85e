#pragma once

#include <string>

namespace demo {

/// What a signature is made of.
struct SignedValues
{
    std::string tenant;
    std::string key;
    std::string nonce;
    std::string timestamp;
};

/// The text that is signed, in Latin-1.
std::string stringToSign(const SignedValues &values, const std::string &secret);

/// HMAC-SHA-256 (RFC 2104) of the text above, keyed with the secret in Latin-1, as 64 small
/// hexadecimal digits. Empty when OpenSSL fails.
std::string signatureOf(const SignedValues &values, const std::string &secret);

/// Whether both texts are the same, in a time that does not tell where they differ.
bool sameText(const std::string &one, const std::string &other);

} // namespace demo
