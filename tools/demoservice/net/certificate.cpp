#include "tools/demoservice/net/certificate.h"

#include <openssl/evp.h>
#include <openssl/rand.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <cstdint>
#include <memory>

namespace demo {

namespace {

constexpr long yearSeconds = 365L * 24 * 3600;
constexpr long hourSeconds = 3600; ///< valid from an hour ago, for clocks that are a little off
constexpr long version3 = 2;       // X.509 counts versions from 0

template <typename Type, void (*free)(Type *)>
struct Freer
{
    void operator()(Type *object) const { free(object); }
};

using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY, EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freer<X509, X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Freer<X509_EXTENSION, X509_EXTENSION_free>>;

bool addName(X509 &certificate)
{
    X509_NAME *const name = X509_get_subject_name(&certificate);
    const auto *const text = reinterpret_cast<const unsigned char *>("localhost");
    return X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, text, -1, -1, 0) == 1
        && X509_set_issuer_name(&certificate, name) == 1;
}

bool addAlternativeNames(X509 &certificate)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, &certificate, &certificate, nullptr, nullptr, 0);
    const Extension names(
        X509V3_EXT_conf_nid(nullptr, &context, NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost"));
    return names && X509_add_ext(&certificate, names.get(), -1) == 1;
}

bool addSerialNumber(X509 &certificate)
{
    std::uint64_t number = 0;
    if (RAND_bytes(reinterpret_cast<unsigned char *>(&number), sizeof number) != 1) {
        return false;
    }
    number >>= 1U; // positive in 64 bits, as RFC 5280 wants it
    return ASN1_INTEGER_set_uint64(X509_get_serialNumber(&certificate), number) == 1;
}

Certificate makeCertificate(EVP_PKEY &key)
{
    Certificate certificate(X509_new());
    X509 *const raw = certificate.get();
    const bool made = raw != nullptr && X509_set_version(raw, version3) == 1
                   && addSerialNumber(*raw)
                   && X509_gmtime_adj(X509_getm_notBefore(raw), -hourSeconds) != nullptr
                   && X509_gmtime_adj(X509_getm_notAfter(raw), yearSeconds) != nullptr
                   && addName(*raw) && addAlternativeNames(*raw) && X509_set_pubkey(raw, &key) == 1
                   && X509_sign(raw, &key, EVP_sha256()) > 0;
    return made ? std::move(certificate) : Certificate();
}

} // namespace

bool useSelfSignedCertificate(SSL_CTX &context)
{
    const Key key(EVP_EC_gen("P-256"));
    if (!key) {
        return false;
    }
    const Certificate certificate = makeCertificate(*key);
    return certificate && SSL_CTX_use_certificate(&context, certificate.get()) == 1
        && SSL_CTX_use_PrivateKey(&context, key.get()) == 1;
}

bool useCertificateFiles(SSL_CTX &context, const std::string &chainFile, const std::string &keyFile)
{
    return SSL_CTX_use_certificate_chain_file(&context, chainFile.c_str()) == 1
        && SSL_CTX_use_PrivateKey_file(&context, keyFile.c_str(), SSL_FILETYPE_PEM) == 1
        && SSL_CTX_check_private_key(&context) == 1;
}

} // namespace demo
