#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/ui/support/windowbench.h"
#include "ui/dialogs/aboutdialog.h"
#include "ui/dialogs/opensoulicense.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QLinearGradient>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTextStream>

namespace {

const QByteArray hotReply
    = R"({"errorCode":"0","result":[)"
      R"({"id":1,"question":"如何登录云桌面？"},)"
      R"({"id":2,"question":"忘记登录密码怎么办？"},)"
      R"({"id":3,"question":"登录时提示“用户名或密码错误”，换了密码还是一样"},)"
      R"({"id":4,"question":"Why is the screen black after logging in?"}]})";

void addFiles(WindowBench &bench)
{
    bench.config().set(QStringLiteral("Version/version"), QStringLiteral("1.0.0"));
    bench.config().set(QStringLiteral("SysEnvironment/EnvType"), QStringLiteral("2"));
    QFile::copy(QStringLiteral(LICENCE_TEXT),
                bench.config().root() + QStringLiteral("/config/OpenSourceLicense.txt"));
    const QDir library(QStringLiteral(LOCAL_LIBRARY));
    QDir().mkpath(QStringLiteral("LocalQA"));
    const QStringList files = library.entryList(QDir::Files);
    for (const QString &file : files) {
        QFile::copy(library.filePath(file), QStringLiteral("LocalQA/") + file);
    }
}

QPixmap picture(const QSize &size)
{
    QPixmap pixmap(size);
    QPainter painter(&pixmap);
    QLinearGradient colours(0, 0, size.width(), size.height());
    colours.setColorAt(0, QColor(42, 100, 244));
    colours.setColorAt(1, QColor(255, 214, 102));
    painter.fillRect(pixmap.rect(), colours);
    painter.setPen(Qt::white);
    painter.drawText(pixmap.rect(), Qt::AlignCenter,
                     QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()));
    return pixmap;
}

/// Saves what widgets show, and remembers whether one could not be saved.
class Photographer
{
public:
    explicit Photographer(const QString &folder)
        : m_folder(folder)
    {
    }

    void shoot(const char *name, QWidget &window)
    {
        QCoreApplication::processEvents();
        save(name, window.grab());
    }

    /// The window with what has popped up over it, in the middle.
    void shootWithMenu(const char *name, QWidget &window)
    {
        QCoreApplication::processEvents();
        QPixmap shot = window.grab();
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (menu == nullptr) {
            qWarning("%s: no menu has popped up", name);
            m_failed = true;
            return;
        }
        const QPixmap popped = menu->grab();
        QPainter(&shot).drawPixmap(window.rect().center() - menu->rect().center(), popped);
        menu->close();
        save(name, shot);
    }

    [[nodiscard]] bool failed() const { return m_failed; }

private:
    void save(const char *name, const QPixmap &shot)
    {
        QPixmap whole(shot.size());
        whole.setDevicePixelRatio(shot.devicePixelRatio());
        whole.fill(QColor(214, 219, 228)); // what lies below translucent places
        QPainter(&whole).drawPixmap(0, 0, shot);
        const QString file = m_folder.filePath(QLatin1String(name) + QLatin1String(".png"));
        m_failed = !whole.save(file) || m_failed;
        QTextStream(stdout) << file << '\n';
    }

    QDir m_folder;
    bool m_failed = false;
};

/// Moves the mouse over \a button and waits until the button knows.
void hover(QPushButton *button)
{
    QTest::mouseMove(button);
    if (!QTest::qWaitFor([button] { return button->underMouse(); })) {
        qWarning("the mouse is not over %s", qUtf8Printable(button->accessibleName()));
    }
}

/// Presses the Tab key until it has brought the focus to \a button.
void tabTo(QPushButton *button)
{
    // Without a window manager nobody else makes a dialog the active window.
    QApplication::setActiveWindow(button->window());
    for (int i = 0; i < 9 && !button->hasFocus(); ++i) {
        QWidget *focus = button->window()->focusWidget();
        QTest::keyClick(focus == nullptr ? button->window() : focus, Qt::Key_Tab);
    }
}

/// The focus where the Tab key has brought it.
void shootFocus(Photographer &photographer, WindowBench &bench)
{
    bench.hotRow(1)->setFocus();
    QTest::keyClick(bench.hotRow(1), Qt::Key_Tab);
    photographer.shoot("focus-hot-question", bench.window());
    bench.input()->setFocus();
    QTest::keyClick(bench.input(), Qt::Key_Tab);
    photographer.shoot("focus-send", bench.window());
    QTest::keyClick(bench.button(QStringLiteral("发送")), Qt::Key_Tab);
    photographer.shoot("focus-more", bench.window());
    QTest::mousePress(bench.input()->viewport(), Qt::LeftButton); // ends the marks
    QTest::mouseRelease(bench.input()->viewport(), Qt::LeftButton);
}

void shootStart(Photographer &photographer)
{
    WindowBench bench;
    addFiles(bench);
    bench.makeWindow();
    photographer.shoot("window-before-the-start", bench.window());
    bench.server().setReplyFor(WindowBench::hotPath, held(httpReply(hotReply)));
    bench.window().startForVdiClient();
    photographer.shoot("window-loading", bench.window());
    bench.server().release();
}

void shootButtons(Photographer &photographer, WindowBench &bench)
{
    for (const auto &[name, text] : {std::pair{"about", "关于"},
                                     {"minimise", "最小化"},
                                     {"close", "关闭"},
                                     {"send", "发送"},
                                     {"more", "换一换"}}) {
        QPushButton *button = bench.button(QString::fromUtf8(text));
        hover(button);
        photographer.shoot((QByteArray("button-") + name + "-hover").constData(), bench.window());
        button->setDown(true);
        photographer.shoot((QByteArray("button-") + name + "-pressed").constData(), bench.window());
        button->setDown(false);
    }
    hover(bench.hotRow(2));
    photographer.shoot("button-hot-question-hover", bench.window());
    QTest::mouseMove(bench.input());
}

void shootTyping(Photographer &photographer, WindowBench &bench)
{
    bench.window().TextInput_color();
    bench.input()->setPlainText(QStringLiteral("登录时提示“用户名或密码错误”"));
    photographer.shoot("input-typed", bench.window());
    bench.input()->setPlainText(QStringLiteral("我的云桌面登录之后一直黑屏。\n").repeated(12));
    photographer.shoot("input-scrolled", bench.window());
    QApplication::clipboard()->setText(
        QStringLiteral("我的云桌面登录之后一直黑屏。").repeated(600));
    bench.input()->clear();
    bench.input()->paste();
    photographer.shoot("input-held", bench.window());
    bench.input()->setPlainText(QStringLiteral("我的云桌面登录之后一直黑屏。\n").repeated(12));
    bench.input()->selectAll();
    bench.window().inputEdit_rightMenu();
    photographer.shootWithMenu("input-menu", bench.window());
    bench.input()->clear();
    bench.window().inputEdit_rightMenu();
    photographer.shootWithMenu("input-menu-greyed", bench.window());
}

void shootSuggestions(Photographer &photographer, WindowBench &bench)
{
    const QVector<QPair<const char *, int>> scenes
        = {{"suggestions-one", 1}, {"suggestions-ten", 10}, {"suggestions-as-many-as-fit", 21}};
    for (const auto &[name, count] : scenes) {
        bench.serveSuggestions(count);
        bench.input()->setPlainText(QStringLiteral("建议"));
        bench.window().showAssociation_process();
        photographer.shoot(name, bench.window());
        if (count == 10 && bench.popup() != nullptr) {
            QTest::keyClick(bench.input(), Qt::Key_Down);
            photographer.shoot("suggestions-by-keys", bench.window());
        }
        bench.window().assoclose_windows();
    }
    bench.input()->clear();
}

void shootMain(Photographer &photographer)
{
    WindowBench bench;
    addFiles(bench);
    bench.server().setReplyFor(WindowBench::hotPath, httpReply(hotReply));
    bench.makeWindow();
    bench.startGreeted();
    photographer.shoot("window-few-hot-questions", bench.window());
    bench.serveHotQuestions(40);
    bench.makeWindow();
    bench.startGreeted();
    photographer.shoot("window-greeting", bench.window());
    bench.button(QStringLiteral("换一换"))->click();
    photographer.shoot("window-second-page", bench.window());
    shootButtons(photographer, bench);
    shootFocus(photographer, bench);
    shootTyping(photographer, bench);
    shootSuggestions(photographer, bench);
    bench.send(QStringLiteral("如何修改密码"));
    photographer.shoot("window-answer", bench.window());
    bench.window().about_menuClicked();
    photographer.shootWithMenu("about-menu", bench.window());
}

void shootOffline(Photographer &photographer)
{
    WindowBench bench(QStringLiteral("ombra"));
    addFiles(bench);
    bench.setLoginState(0);
    bench.makeWindow();
    bench.window().startForLauncher();
    photographer.shoot("window-logged-out", bench.window());
    bench.serveHotQuestions(0);
    bench.setLoginState(1);
    bench.makeWindow();
    bench.window().startForLauncher();
    static_cast<void>(QTest::qWaitFor([&bench] { return !bench.hotRows().isEmpty(); }));
    photographer.shoot("window-without-service", bench.window());
    if (QPushButton *row = bench.hotRow(2)) {
        row->click();
        photographer.shoot("window-local-answer", bench.window());
    }
}

void shootDialogs(Photographer &photographer)
{
    WindowBench bench;
    addFiles(bench);
    auto *about = new AboutDialog(&bench.window());
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->show();
    photographer.shoot("dialog-about", *about);
    auto *licences = about->findChild<QPushButton *>(QStringLiteral("licenseButton"));
    tabTo(licences);
    photographer.shoot("focus-licences", *about);
    licences->click();
    if (auto *licence = about->findChild<OpenSouLicense *>()) {
        photographer.shoot("dialog-licences", *licence);
        tabTo(licence->findChild<QPushButton *>(QStringLiteral("affirmButton")));
        photographer.shoot("focus-confirm", *licence);
        licence->close();
    }
    about->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void shootPreview(Photographer &photographer)
{
    WindowBench bench;
    bench.dropWindow(); // the mouse would be over it
    const QVector<QPair<const char *, QSize>> scenes = {{"preview-small", {160, 90}},
                                                        {"preview-large", {2400, 1500}},
                                                        {"preview-tall", {300, 3000}}};
    for (const auto &[name, size] : scenes) {
        ImageDisplay preview;
        preview.PreviewWin(picture(size), QStringLiteral("如何登录云桌面？"), false, 1);
        preview.setPictureCount(3);
        preview.show();
        photographer.shoot(name, preview);
    }
    ImageDisplay preview;
    preview.PreviewWin(picture({800, 500}),
                       QStringLiteral("一个很长的标题，长到放不进标题栏：").repeated(6), false, 0);
    preview.setPictureCount(1);
    preview.show();
    photographer.shoot("preview-long-title", preview);
    preview.resize(600, 400);
    photographer.shoot("preview-least-size", preview);
    const auto buttons = preview.findChildren<QPushButton *>();
    for (int i = 0; i < buttons.size(); ++i) {
        hover(buttons.at(i));
        photographer.shoot(("preview-hover-" + QByteArray::number(i + 1)).constData(), preview);
    }
}

} // namespace

/// Usage: windowshots FOLDER: saves a picture of every state of every window there, but for what is
/// in the conversation.
int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Microsoft YaHei")));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setCursorFlashTime(0); // else by chance
    initResources();
    if (QApplication::arguments().size() != 2 || !QDir().mkpath(QApplication::arguments().at(1))) {
        return 2;
    }
    Photographer photographer(QDir(QApplication::arguments().at(1)).absolutePath());
    shootStart(photographer);
    shootMain(photographer);
    shootOffline(photographer);
    shootDialogs(photographer);
    shootPreview(photographer);
    return photographer.failed() ? 1 : 0;
}
