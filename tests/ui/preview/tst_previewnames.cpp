#include "ui/preview/imagedisplay.h"

#include <QMetaMethod>
#include <QTest>

#include <type_traits>

namespace {

template <typename Member, typename Expected>
constexpr bool isExactly = std::is_same_v<Member, Expected>;

static_assert(isExactly<decltype(&ImageDisplay::PreviewWin_initial), void (ImageDisplay::*)()>);
static_assert(isExactly<decltype(&ImageDisplay::changeImage_gif), void (ImageDisplay::*)(int)>);
static_assert(isExactly<decltype(&ImageDisplay::setTempGeometry), void (ImageDisplay::*)(QRect &)>);
static_assert(
    isExactly<decltype(&ImageDisplay::setTempGeometry_03), void (ImageDisplay::*)(QRect &)>);

/// The methods of \a type that the class itself declares, in their order.
QVector<QMetaMethod> ownMethods(QMetaMethod::MethodType type)
{
    QVector<QMetaMethod> methods;
    const QMetaObject &meta = ImageDisplay::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type) {
            methods.append(meta.method(i));
        }
    }
    return methods;
}

QList<QByteArray> signaturesOf(const QVector<QMetaMethod> &methods)
{
    QList<QByteArray> signatures;
    for (const QMetaMethod &method : methods) {
        signatures.append(method.methodSignature());
    }
    return signatures;
}

} // namespace

/// The names of the preview window that others count on.
class TestPreviewNames : public QObject
{
    Q_OBJECT

private slots:
    void signalsOfTheWindow();
    void slots_inTheirOrder_private();
    void previewWinInitial_mayBeRunAgain();
};

void TestPreviewNames::signalsOfTheWindow()
{
    QCOMPARE(signaturesOf(ownMethods(QMetaMethod::Signal)),
             (QList<QByteArray>{"previousImage_signal(int)", "nextImage_signal(int)"}));
}

void TestPreviewNames::slots_inTheirOrder_private()
{
    const QVector<QMetaMethod> methods = ownMethods(QMetaMethod::Slot);
    QCOMPARE(signaturesOf(methods),
             (QList<QByteArray>{"min_windows_Imag()", "max_windows_Imag()", "MaxToNormal()",
                                "close_windows_Imag()", "magnifier_clicked()", "narrow_clicked()",
                                "oneToOneSize_clicked()", "MaxPicWind_clicked()",
                                "nextImage_clicked()", "previousImage_clicked()",
                                "paintEvent(QPaintEvent*)", "ImageZooming_operation(int,int)"}));
    for (const QMetaMethod &method : methods) {
        QCOMPARE(method.access(), QMetaMethod::Private);
    }
}

void TestPreviewNames::previewWinInitial_mayBeRunAgain()
{
    QPixmap picture(30, 20);
    picture.fill(Qt::red);
    ImageDisplay window;
    window.PreviewWin(picture, QString(), false, 3);
    window.resize(700, 500);
    window.PreviewWin_initial();
    QCOMPARE(window.size(), QSize(920, 646));
    QCOMPARE(window.currentIndex(), 3);
}

QTEST_MAIN(TestPreviewNames)
#include "tst_previewnames.moc"
