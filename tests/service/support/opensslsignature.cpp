#include "tests/service/support/opensslsignature.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

QByteArray opensslSignature(const QByteArray &message, const QByteArray &secret)
{
    unsigned char code[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    HMAC(EVP_sha256(), secret.constData(), secret.size(),
         reinterpret_cast<const unsigned char *>(message.constData()),
         static_cast<size_t>(message.size()), code, &length);
    return QByteArray(reinterpret_cast<const char *>(code), static_cast<int>(length)).toHex();
}
