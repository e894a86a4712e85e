#include "packaging/windows/setup/inisettings.h"

#include <QTest>

/// How a new settings file is made of the sample and given values.
class TestIniSettings : public QObject
{
    Q_OBJECT

private slots:
    void keyOfTheGroup_getsTheValue();
    void sameKeyInAnotherGroup_staysAsItIs();
    void keyThatIsOnlyAComment_isAddedToItsGroup();
    void newKey_goesBehindTheLastLineOfItsGroup();
    void newGroup_isAddedAtTheEnd();
    void lineEnds_becomeThoseOfWindows();
    void emptyText_getsGroupAndKey();
    void valueWithEqualsSigns_isReadWhole();
    void onlyTheGroup_isRead();
    void comments_areNotRead();
    void lastOfTwoEqualKeys_counts();
    void byteOrderMark_isPassedOver();
};

namespace {

QString joined(const std::vector<IniSetting> &settings)
{
    QString text;
    for (const IniSetting &setting : settings) {
        text += QString::fromStdString(setting.group + "/" + setting.key + "=" + setting.value
                                       + " ");
    }
    return text;
}

} // namespace

void TestIniSettings::keyOfTheGroup_getsTheValue()
{
    QCOMPARE(withSettings("[a]\nx=1\ny = 2\n", {{"a", "y", "3"}}),
             std::string("[a]\r\nx=1\r\ny=3\r\n"));
}

void TestIniSettings::sameKeyInAnotherGroup_staysAsItIs()
{
    QCOMPARE(withSettings("[a]\nx=1\n[b]\nx=2\n", {{"b", "x", "3"}}),
             std::string("[a]\r\nx=1\r\n[b]\r\nx=3\r\n"));
}

void TestIniSettings::keyThatIsOnlyAComment_isAddedToItsGroup()
{
    QCOMPARE(withSettings("[a]\n; x=1\n", {{"a", "x", "2"}}),
             std::string("[a]\r\n; x=1\r\nx=2\r\n"));
}

void TestIniSettings::newKey_goesBehindTheLastLineOfItsGroup()
{
    QCOMPARE(withSettings("[a]\nx=1\n\n[b]\n", {{"a", "y", "2"}}),
             std::string("[a]\r\nx=1\r\ny=2\r\n\r\n[b]\r\n"));
}

void TestIniSettings::newGroup_isAddedAtTheEnd()
{
    QCOMPARE(withSettings("[a]\nx=1\n", {{"b", "y", "2"}, {"b", "z", "3"}}),
             std::string("[a]\r\nx=1\r\n[b]\r\ny=2\r\nz=3\r\n"));
}

void TestIniSettings::lineEnds_becomeThoseOfWindows()
{
    QCOMPARE(withSettings("[a]\r\nx=1\ny=2", {}), std::string("[a]\r\nx=1\r\ny=2\r\n"));
}

void TestIniSettings::emptyText_getsGroupAndKey()
{
    QCOMPARE(withSettings("", {{"a", "x", "1"}}), std::string("[a]\r\nx=1\r\n"));
}

void TestIniSettings::valueWithEqualsSigns_isReadWhole()
{
    QCOMPARE(joined(settingsOfGroup("[A]\nkey = c2VjcmV0== \n", "A")),
             QStringLiteral("A/key=c2VjcmV0== "));
}

void TestIniSettings::onlyTheGroup_isRead()
{
    QCOMPARE(joined(settingsOfGroup("x=0\n[A]\nx=1\n[B]\nx=2\n[A]\ny=3\n", "A")),
             QStringLiteral("A/x=1 A/y=3 "));
}

void TestIniSettings::comments_areNotRead()
{
    QCOMPARE(joined(settingsOfGroup("[A]\n;x=1\n#y=2\n z=3\nnothing\n", "A")),
             QStringLiteral("A/z=3 "));
}

void TestIniSettings::lastOfTwoEqualKeys_counts()
{
    QCOMPARE(joined(settingsOfGroup("[A]\nx=1\nx=2\n", "A")), QStringLiteral("A/x=2 "));
}

void TestIniSettings::byteOrderMark_isPassedOver()
{
    QCOMPARE(joined(settingsOfGroup("\xef\xbb\xbf[A]\r\nx=1\r\n", "A")), QStringLiteral("A/x=1 "));
}

QTEST_GUILESS_MAIN(TestIniSettings)
#include "tst_inisettings.moc"
