#include "tests/service/support/testcertificate.h"

#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

#include <memory>

namespace {

constexpr unsigned int keyBits = 2048;
constexpr long validSeconds = 3600;

template <auto function>
struct Freed
{
    template <typename T>
    void operator()(T *object) const
    {
        function(object);
    }
};

using Key = std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freed<X509_free>>;
using Memory = std::unique_ptr<BIO, Freed<BIO_free_all>>;

struct Pems
{
    QByteArray key;
    QByteArray certificate;
};

QByteArray contents(const Memory &memory)
{
    char *bytes = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &bytes);
    return QByteArray(bytes, static_cast<int>(size));
}

Certificate selfSigned(EVP_PKEY *key)
{
    Certificate certificate(X509_new());
    X509_set_version(certificate.get(), 2); // counted from 0: version 3
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -validSeconds);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validSeconds);
    X509_set_pubkey(certificate.get(), key);
    X509_NAME *name = X509_get_subject_name(certificate.get());
    const auto *text = reinterpret_cast<const unsigned char *>("service.example");
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, text, -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    X509_sign(certificate.get(), key, EVP_sha256());
    return certificate;
}

Pems makePems()
{
    const Key key(EVP_RSA_gen(keyBits));
    const Certificate certificate = selfSigned(key.get());
    const Memory keyPem(BIO_new(BIO_s_mem()));
    const Memory certificatePem(BIO_new(BIO_s_mem()));
    PEM_write_bio_PrivateKey(keyPem.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    PEM_write_bio_X509(certificatePem.get(), certificate.get());
    return {contents(keyPem), contents(certificatePem)};
}

} // namespace

QSslConfiguration selfSignedServer(QSsl::SslProtocol protocol)
{
    static const Pems pems = makePems();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPrivateKey(QSslKey(pems.key, QSsl::Rsa));
    configuration.setLocalCertificate(QSslCertificate(pems.certificate));
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setProtocol(protocol);
    return configuration;
}
