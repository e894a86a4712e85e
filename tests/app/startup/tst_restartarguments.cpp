#include "app/startup/restartarguments.h"

#include <QTest>

/// What is kept of a command line for the start after an update.
class TestRestartArguments : public QObject
{
    Q_OBJECT

private slots:
    void argumentsBehindTheName_areKept_data();
    void argumentsBehindTheName_areKept();
};

void TestRestartArguments::argumentsBehindTheName_areKept_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("arguments");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("name alone") << "Miravel.exe" << QString();
    QTest::newRow("quoted name alone") << "\"C:\\a b\\Miravel.exe\"" << QString();
    QTest::newRow("blanks behind the name") << "\"C:\\a b\\Miravel.exe\"  " << QString();
    QTest::newRow("plain name") << "Miravel.exe --Type=vdi"
                                << "--Type=vdi";
    QTest::newRow("name in quotes") << "\"C:\\a b\\Miravel.exe\" --Type=ombra"
                                    << "--Type=ombra";
    QTest::newRow("nothing between quote and argument") << "\"a b\"--Type=vdi"
                                                        << "--Type=vdi";
    QTest::newRow("tab") << "Miravel.exe\t--Type vdi"
                         << "--Type vdi";
    QTest::newRow("quotes of arguments stay") << "\"a b\" --Type \"v d\" \"x\""
                                              << "--Type \"v d\" \"x\"";
    QTest::newRow("open quote") << "\"C:\\a b --Type=vdi" << QString();
}

void TestRestartArguments::argumentsBehindTheName_areKept()
{
    QFETCH(QString, commandLine);
    QFETCH(QString, arguments);
    QCOMPARE(QString::fromStdWString(restartArguments(commandLine.toStdWString())), arguments);
}

QTEST_GUILESS_MAIN(TestRestartArguments)

#include "tst_restartarguments.moc"
