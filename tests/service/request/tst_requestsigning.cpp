#include "service/request/requestsigning.h"
#include "service/request/signedrequest.h"
#include "tests/service/support/opensslsignature.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTest>

/// Credentials, the canonical text and its signature.
class TestRequestSigning : public QObject
{
    Q_OBJECT

private slots:
    void credential_isDecoded_data();
    void credential_isDecoded();
    void credential_decodedFromOnlyForeignCharactersIsEmpty();
    void stringToSign_holdsTheValuesInOrder();
    void stringToSign_withEmptyValuesKeepsItsFrame();
    void stringToSign_escapesNothing();
    void stringToSign_fillsPlaceMarkersInsideValuesLater_data();
    void stringToSign_fillsPlaceMarkersInsideValuesLater();
    void signature_matchesThePublishedVectors_data();
    void signature_matchesThePublishedVectors();
    void signature_matchesOpenSsl_data();
    void signature_matchesOpenSsl();
    void signature_isLowerCaseHexadecimal();
    void signature_ofAnEmptySecretIsKeyedWithEmptyText();
    void nonce_isAVersionFourUuidInBraces();
    void nonce_differsBetweenTwoRequestsOfTheSameMillisecond();
    void timestamp_isMillisecondsSinceTheEpoch();
};

void TestRequestSigning::credential_isDecoded_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("decoded");
    QTest::newRow("text") << QStringLiteral("c2VjcmV0") << QStringLiteral("secret");
    QTest::newRow("padding") << QStringLiteral("a2V5MQ==") << QStringLiteral("key1");
    QTest::newRow("no padding") << QStringLiteral("a2V5MQ") << QStringLiteral("key1");
    QTest::newRow("foreign characters")
        << QStringLiteral("c2V-j cm\n!V0") << QStringLiteral("secret");
    QTest::newRow("Chinese") << QStringLiteral("5a+G6ZKl") << QStringLiteral("密钥");
    QTest::newRow("NUL inside") << QString::fromLatin1(QByteArray("ab\0cd", 5).toBase64())
                                << QStringLiteral("ab");
    QTest::newRow("NUL first") << QString::fromLatin1(QByteArray("\0cd", 3).toBase64())
                               << QString();
    QTest::newRow("not UTF-8") << QString::fromLatin1(QByteArray("a\xff").toBase64())
                               << QString(QStringLiteral("a") + QChar(0xfffd));
    QTest::newRow("empty") << QString() << QString();
}

void TestRequestSigning::credential_isDecoded()
{
    QFETCH(QString, stored);
    QFETCH(QString, decoded);
    QCOMPARE(decodedCredential(stored), decoded);
}

void TestRequestSigning::credential_decodedFromOnlyForeignCharactersIsEmpty()
{
    QCOMPARE(decodedCredential(QStringLiteral("!!! 密 ???")), QString());
}

void TestRequestSigning::stringToSign_holdsTheValuesInOrder()
{
    QCOMPARE(stringToSign({QStringLiteral("t"), QStringLiteral("k"), QStringLiteral("s"),
                           QStringLiteral("{n}"), QStringLiteral("1700000000000")}),
             QStringLiteral("tenantId=t&x-ca-key=k&x-ca-nonce={n}&x-ca-secret=s"
                            "&x-ca-timestamp=1700000000000"));
}

void TestRequestSigning::stringToSign_withEmptyValuesKeepsItsFrame()
{
    QCOMPARE(stringToSign({}),
             QStringLiteral("tenantId=&x-ca-key=&x-ca-nonce=&x-ca-secret=&x-ca-timestamp="));
}

void TestRequestSigning::stringToSign_escapesNothing()
{
    QCOMPARE(stringToSign({QStringLiteral("a&b=c"), QStringLiteral("d e"), QStringLiteral("密"),
                           QStringLiteral("{n}"), QStringLiteral("1")}),
             QStringLiteral("tenantId=a&b=c&x-ca-key=d e&x-ca-nonce={n}&x-ca-secret=密"
                            "&x-ca-timestamp=1"));
}

void TestRequestSigning::stringToSign_fillsPlaceMarkersInsideValuesLater_data()
{
    QTest::addColumn<QString>("tenantId");
    QTest::addColumn<QString>("secret");
    QTest::addColumn<QString>("text");
    // %3 is the nonce's place, so the nonce goes to both.
    QTest::newRow("%3 in the tenant id")
        << QStringLiteral("a%3b") << QStringLiteral("s")
        << QStringLiteral("tenantId=aNb&x-ca-key=K&x-ca-nonce=N&x-ca-secret=s&x-ca-timestamp=T");
    QTest::newRow("%5 in the secret")
        << QStringLiteral("t") << QStringLiteral("s%5")
        << QStringLiteral("tenantId=t&x-ca-key=K&x-ca-nonce=N&x-ca-secret=sT&x-ca-timestamp=T");
    // The lowest number left is filled first, so every later value moves up by one place.
    QTest::newRow("%1 in the tenant id")
        << QStringLiteral("%1") << QStringLiteral("s")
        << QStringLiteral("tenantId=K&x-ca-key=N&x-ca-nonce=s&x-ca-secret=T&x-ca-timestamp=%5");
    QTest::newRow("a bare per cent sign")
        << QStringLiteral("50%") << QStringLiteral("%%")
        << QStringLiteral("tenantId=50%&x-ca-key=K&x-ca-nonce=N&x-ca-secret=%%&x-ca-timestamp=T");
}

void TestRequestSigning::stringToSign_fillsPlaceMarkersInsideValuesLater()
{
    QFETCH(QString, tenantId);
    QFETCH(QString, secret);
    QFETCH(QString, text);
    QCOMPARE(stringToSign(
                 {tenantId, QStringLiteral("K"), secret, QStringLiteral("N"), QStringLiteral("T")}),
             text);
}

void TestRequestSigning::signature_matchesThePublishedVectors_data()
{
    // RFC 4231; its fifth case is a truncated code, which we do not use.
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("case 1") << QByteArray(20, '\x0b') << QByteArray("Hi There")
                            << QByteArray("b0344c61d8db38535ca8afceaf0bf12b"
                                          "881dc200c9833da726e9376c2e32cff7");
    QTest::newRow("case 2") << QByteArray("Jefe") << QByteArray("what do ya want for nothing?")
                            << QByteArray("5bdcc146bf60754e6a042426089575c7"
                                          "5a003f089d2739839dec58b964ec3843");
    QTest::newRow("case 3") << QByteArray(20, '\xaa') << QByteArray(50, '\xdd')
                            << QByteArray("773ea91e36800e46854db8ebd09181a7"
                                          "2959098b3ef8c122d9635514ced565fe");
    QTest::newRow("case 4") << QByteArray::fromHex(
        "0102030405060708090a0b0c0d0e0f10111213141516171819")
                            << QByteArray(50, '\xcd')
                            << QByteArray("82558a389a443c0ea4cc819899f2083a"
                                          "85f0faa3e578f8077a2e3ff46729665b");
    QTest::newRow("case 6") << QByteArray(131, '\xaa')
                            << QByteArray("Test Using Larger Than Block-Size Key - Hash Key First")
                            << QByteArray("60e431591ee0b67f0d8a26aacbf5b77f"
                                          "8e0bc6213728c5140546040f0ee37f54");
    QTest::newRow("case 7") << QByteArray(131, '\xaa')
                            << QByteArray("This is a test using a larger than block-size key and a "
                                          "larger than block-size data. The key needs to be hashed "
                                          "before being used by the HMAC algorithm.")
                            << QByteArray("9b09ffa71b942fcb27635fbcd5b0e944"
                                          "bfdc63644f0713938a7f51535c3a35e2");
}

void TestRequestSigning::signature_matchesThePublishedVectors()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, code);
    QCOMPARE(requestSignature(QString::fromLatin1(data), QString::fromLatin1(key)), code);
}

void TestRequestSigning::signature_matchesOpenSsl_data()
{
    QTest::addColumn<QString>("secret");
    QTest::addColumn<QByteArray>("secretBytes");
    QTest::newRow("plain") << QStringLiteral("the secret") << QByteArray("the secret");
    QTest::newRow("Latin-1") << QStringLiteral("gr\u00fcn") << QByteArray("gr\xfcn");
    QTest::newRow("outside of Latin-1") << QStringLiteral("密钥") << QByteArray("??");
}

void TestRequestSigning::signature_matchesOpenSsl()
{
    QFETCH(QString, secret);
    QFETCH(QByteArray, secretBytes);
    const QString message = stringToSign({QStringLiteral("t"), QStringLiteral("k"), secret,
                                          QStringLiteral("{n}"), QStringLiteral("1700000000000")});
    const QByteArray bytes = "tenantId=t&x-ca-key=k&x-ca-nonce={n}&x-ca-secret=" + secretBytes
                           + "&x-ca-timestamp=1700000000000";
    QCOMPARE(requestSignature(message, secret), opensslSignature(bytes, secretBytes));
}

void TestRequestSigning::signature_isLowerCaseHexadecimal()
{
    static const QRegularExpression form(QStringLiteral("^[0-9a-f]{64}$"));
    const QByteArray signature
        = requestSignature(QStringLiteral("message"), QStringLiteral("secret"));
    QVERIFY(form.match(QString::fromLatin1(signature)).hasMatch());
}

void TestRequestSigning::signature_ofAnEmptySecretIsKeyedWithEmptyText()
{
    QCOMPARE(requestSignature(QStringLiteral("message"), QString()),
             opensslSignature("message", QByteArray("")));
}

void TestRequestSigning::nonce_isAVersionFourUuidInBraces()
{
    static const QRegularExpression form(
        QStringLiteral("^\\{[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-"
                       "[0-9a-f]{12}\\}$"));
    const QString nonce = freshCredentials({}).nonce;
    QVERIFY2(form.match(nonce).hasMatch(), qPrintable(nonce));
    QCOMPARE(nonce.size(), 38);
}

void TestRequestSigning::nonce_differsBetweenTwoRequestsOfTheSameMillisecond()
{
    RequestCredentials first;
    RequestCredentials second;
    do {
        first = freshCredentials({});
        second = freshCredentials({});
    } while (first.timestamp != second.timestamp);
    QVERIFY(first.nonce != second.nonce);
    QVERIFY(stringToSign(first) != stringToSign(second));
}

void TestRequestSigning::timestamp_isMillisecondsSinceTheEpoch()
{
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const QString timestamp = freshCredentials({}).timestamp;
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    QCOMPARE(timestamp.size(), 13);
    QVERIFY(timestamp.toLongLong() >= before);
    QVERIFY(timestamp.toLongLong() <= after);
}

QTEST_GUILESS_MAIN(TestRequestSigning)
#include "tst_requestsigning.moc"
