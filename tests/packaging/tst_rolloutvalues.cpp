#include "packaging/windows/setup/rolloutvalues.h"

#include <QTest>

#include <map>

/// Which values of a roll-out are refused.
class TestRolloutValues : public QObject
{
    Q_OBJECT

private slots:
    void valuesThatCanBeUsed_areAccepted();
    void wrongValue_isNamedInBothLanguages_data();
    void wrongValue_isNamedInBothLanguages();
    void clientLayoutWithoutItsFolder_isRefused();
    void everyWrongValue_isNamed();
};

namespace {

RolloutValues good()
{
    RolloutValues values;
    values.layout = "standalone";
    return values;
}

} // namespace

void TestRolloutValues::valuesThatCanBeUsed_areAccepted()
{
    QVERIFY(complaints(good()).empty());
    RolloutValues all = good();
    all.layout = "client";
    all.clientFolder = "C:\\client";
    all.logLevel = "WARN";
    all.serviceAddress = "qa-1.service.example";
    all.servicePort = "65535";
    all.serviceMode = "https";
    all.guardPort = "1";
    all.translation = "en";
    QVERIFY(complaints(all).empty());
}

void TestRolloutValues::wrongValue_isNamedInBothLanguages_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("value");
    QTest::newRow("unknown layout") << "LAYOUT"
                                    << "both";
    QTest::newRow("no layout") << "LAYOUT"
                               << "";
    QTest::newRow("level that means ERROR to the program") << "LOGLEVEL"
                                                           << "WARNING";
    QTest::newRow("level in small letters") << "LOGLEVEL"
                                            << "debug";
    QTest::newRow("language without a translation") << "TRANSLATION"
                                                    << "de";
    QTest::newRow("port 0") << "SERVICEPORT"
                            << "0";
    QTest::newRow("port too large") << "SERVICEPORT"
                                    << "65536";
    QTest::newRow("port with many digits") << "SERVICEPORT"
                                           << "99999999999999999999";
    QTest::newRow("negative port") << "SERVICEPORT"
                                   << "-1";
    QTest::newRow("port with a blank") << "SERVICEPORT"
                                       << "443 ";
    QTest::newRow("address with a scheme") << "SERVICEADDRESS"
                                           << "https://service.example";
    QTest::newRow("address with a list separator") << "SERVICEADDRESS"
                                                   << "a,b";
    QTest::newRow("address with a bar") << "SERVICEADDRESS"
                                        << "a|b";
    QTest::newRow("mode as a number") << "SERVICEMODE"
                                      << "1";
    QTest::newRow("guard port too large") << "GUARDPORT"
                                          << "70000";
}

void TestRolloutValues::wrongValue_isNamedInBothLanguages()
{
    QFETCH(QString, property);
    QFETCH(QString, value);
    RolloutValues values = good();
    const std::map<QString, std::string *> places
        = {{QStringLiteral("LAYOUT"), &values.layout},
           {QStringLiteral("LOGLEVEL"), &values.logLevel},
           {QStringLiteral("SERVICEPORT"), &values.servicePort},
           {QStringLiteral("SERVICEADDRESS"), &values.serviceAddress},
           {QStringLiteral("SERVICEMODE"), &values.serviceMode},
           {QStringLiteral("GUARDPORT"), &values.guardPort},
           {QStringLiteral("TRANSLATION"), &values.translation}};
    *places.at(property) = value.toStdString();
    const std::vector<std::string> found = complaints(values);
    QCOMPARE(found.size(), std::size_t(1));
    const QString text = QString::fromStdString(found[0]);
    QVERIFY(text.contains(property + QStringLiteral(" must be")));
    QVERIFY(text.contains(property + QString::fromUtf8(" 只能是"))
            || text.contains(property + QString::fromUtf8(" 必须是")));
}

void TestRolloutValues::clientLayoutWithoutItsFolder_isRefused()
{
    RolloutValues values = good();
    values.layout = "client";
    QCOMPARE(complaints(values).size(), std::size_t(1));
    QVERIFY(QString::fromStdString(complaints(values)[0]).contains(QStringLiteral("CLIENTFOLDER")));
}

void TestRolloutValues::everyWrongValue_isNamed()
{
    RolloutValues values = good();
    values.logLevel = "?";
    values.servicePort = "?";
    values.serviceMode = "?";
    QCOMPARE(complaints(values).size(), std::size_t(3));
}

QTEST_GUILESS_MAIN(TestRolloutValues)
#include "tst_rolloutvalues.moc"
