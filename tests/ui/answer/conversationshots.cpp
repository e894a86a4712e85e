#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/copymenu.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/recommend/recommendbox.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QLinearGradient>
#include <QMovie>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>

namespace {

constexpr QSize regionSize(646, 490);

QJsonArray recommends(int count)
{
    QJsonArray array;
    for (int i = 1; i <= count; ++i) {
        QString text = QStringLiteral("第%1个推荐：云桌面无法连接打印机怎么办？").arg(i);
        if (i % 4 == 2) {
            text += QStringLiteral("换了网络、重新登录、重启客户端之后还是同样的提示");
        }
        array.append(
            QJsonObject{{QStringLiteral("question"), text}, {QStringLiteral("questionId"), i}});
    }
    return array;
}

QString pictureTag(const QByteArray &bytes, const char *type)
{
    return QStringLiteral("<p><img src=\"data:image/%1;base64,%2\" style=\"\"/></p>")
        .arg(QLatin1String(type), QLatin1String(bytes.toBase64()));
}

QString stillPicture(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient colours(0, 0, size.width(), size.height());
    colours.setColorAt(0, QColor(42, 100, 244));
    colours.setColorAt(1, QColor(255, 214, 102));
    painter.fillRect(image.rect(), colours);
    painter.setPen(Qt::white);
    painter.drawText(image.rect(), Qt::AlignCenter,
                     QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return pictureTag(bytes, "png");
}

/// The program's own moving picture, 150 x 260 px.
QString animatedPicture()
{
    QFile file(QStringLiteral(":/Images/waiting.gif"));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("the moving picture is missing");
    }
    return pictureTag(file.readAll(), "gif");
}

QString shortReply()
{
    return QStringLiteral("<p>请打开“设置”，选择<b>账号与安全</b>，点击“修改密码”。</p>"
                          "<p>详见<a href=\"https://help.example/password\">密码帮助</a>。</p>");
}

QString longReply()
{
    QString reply;
    for (int i = 1; i <= 12; ++i) {
        reply += QStringLiteral("<p>第%1步：在客户端的设置里找到对应的选项，按照提示逐项检查，"
                                "确认之后保存。</p>")
                     .arg(i);
    }
    return reply;
}

/// Makes the pictures, each from a conversation of its own.
class Photographer
{
public:
    explicit Photographer(const QString &folder)
        : m_folder(folder)
    {
    }

    /// Saves what the region shows after \a scene as \a name.
    void shoot(const QByteArray &name, const std::function<void(QARegion &)> &scene)
    {
        QARegion region;
        region.resize(regionSize);
        region.show();
        scene(region);
        QCoreApplication::processEvents();
        QPixmap shot = region.grab();
        if (auto *menu = region.findChild<CopyMenu *>()) {
            QPainter(&shot).drawPixmap(300, 100, menu->grab());
            menu->close();
        }
        const QString file = m_folder.filePath(QString::fromLatin1(name) + QLatin1String(".png"));
        m_failed = !shot.save(file) || m_failed;
        QTextStream(stdout) << file << '\n';
    }

    [[nodiscard]] bool failed() const { return m_failed; }

private:
    QDir m_folder;
    bool m_failed = false;
};

AnswerItem *lastAnswer(const QARegion &region)
{
    return region.findChildren<AnswerItem *>().last();
}

void shootResults(Photographer &photographer)
{
    const QString question = QStringLiteral("怎么改密码");
    photographer.shoot("result-normal", [&](QARegion &region) {
        region.addQuestionBubble(question);
        region.QA_NORMAL_RESULT(question, QStringLiteral("如何修改密码？"), shortReply());
    });
    photographer.shoot("result-multi", [&](QARegion &region) {
        region.addQuestionBubble(question);
        region.MULTI_QA_RESULT(question, QStringLiteral("如何修改密码？"), shortReply(),
                               recommends(10));
    });
    photographer.shoot("result-none-with-recommendations", [&](QARegion &region) {
        region.addQuestionBubble(question);
        region.NO_RESULT(10, recommends(10), question);
    });
    photographer.shoot("result-none", [&](QARegion &region) {
        region.addQuestionBubble(question);
        region.NO_RESULT(0, QJsonArray(), question);
    });
    photographer.shoot("result-empty-reply", [&](QARegion &region) {
        region.addQuestionBubble(question);
        region.QA_NORMAL_RESULT(question, QString(), QString());
        region.isGetResponse();
    });
}

void shootFolds(Photographer &photographer)
{
    const auto show = [](QARegion &region, bool withBox) {
        const QString title = QStringLiteral("如何检查客户端？");
        if (withBox) {
            region.showAnswerWithRecommends(title, longReply(), readRecommendations(recommends(10)),
                                            title);
        } else {
            region.showAnswer(title, longReply());
        }
    };
    for (const bool withBox : {false, true}) {
        const auto name = [withBox](const char *state) {
            return QByteArray(withBox ? "answer-with-box-" : "answer-") + state;
        };
        photographer.shoot(name("folded"), [&](QARegion &region) { show(region, withBox); });
        photographer.shoot(name("opened-top"), [&](QARegion &region) {
            show(region, withBox);
            region.FoldToOpen_answer(0);
        });
        photographer.shoot(name("opened-foot"), [&](QARegion &region) {
            show(region, withBox);
            region.FoldToOpen_answer(0);
            region.scrollToBottom();
        });
        photographer.shoot(name("folded-again"), [&](QARegion &region) {
            show(region, withBox);
            region.FoldToOpen_answer(0);
            region.OpenToFold_answer(0);
        });
    }
}

void shootPages(Photographer &photographer)
{
    for (const int count : {3, 5, 10, 15}) {
        for (int page = 1; page <= 3; ++page) {
            photographer.shoot(
                QStringLiteral("recommendations-%1-page-%2").arg(count).arg(page).toLatin1(),
                [count, page](QARegion &region) {
                    region.showRecommendOnly(readRecommendations(recommends(count)),
                                             QStringLiteral("问"));
                    for (int i = 1; i < page; ++i) {
                        region.findChild<RecommendBox *>()->showNextPage();
                    }
                });
        }
    }
}

void shootPictures(Photographer &photographer)
{
    photographer.shoot("pictures-still", [](QARegion &region) {
        region.showAnswer(QStringLiteral("一张图片"),
                          QStringLiteral("<p>如图：</p>") + stillPicture({160, 90}));
    });
    photographer.shoot("pictures-wide", [](QARegion &region) {
        region.showAnswer(QStringLiteral("宽图"), stillPicture({1600, 200}));
    });
    photographer.shoot("pictures-tall", [](QARegion &region) {
        region.showAnswer(QStringLiteral("长图"), stillPicture({200, 1600}));
    });
    photographer.shoot("pictures-tiny", [](QARegion &region) {
        region.showAnswer(QStringLiteral("小图"), stillPicture({8, 8}));
    });
    photographer.shoot("pictures-animated", [](QARegion &region) {
        region.showAnswer(QStringLiteral("动图"),
                          QStringLiteral("<p>如图：</p>") + animatedPicture());
        lastAnswer(region)->content()->pictureRows().first()->label()->movie()->setPaused(true);
    });
}

void shootMenus(Photographer &photographer)
{
    for (const bool enabled : {true, false}) {
        photographer.shoot(enabled ? "copy-menu" : "copy-menu-greyed", [enabled](QARegion &region) {
            region.showAnswer(QStringLiteral("如何修改密码？"), shortReply());
            if (enabled) {
                lastAnswer(region)->content()->paragraphs().first()->setSelection(2, 6);
            }
            region.qaRightHitMenu_show(0, ConversationCopier::Paragraph);
        });
    }
}

void shootQuestions(Photographer &photographer)
{
    photographer.shoot("question-long-chinese", [](QARegion &region) {
        region.addQuestionBubble(
            QStringLiteral("云桌面登录之后一直黑屏，换了网络和电脑都一样，应该怎么处理？")
                .repeated(4));
    });
    photographer.shoot("question-long-latin", [](QARegion &region) {
        region.addQuestionBubble(
            QStringLiteral("The desktop stays black after logging in, whatever network is used. ")
                .repeated(4));
    });
}

} // namespace

/// Usage: conversationshots FOLDER: saves a picture of every state of the conversation there.
int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Microsoft YaHei")));
    initResources();
    initAppPaths(QString());
    if (QApplication::arguments().size() != 2 || !QDir().mkpath(QApplication::arguments().at(1))) {
        return 2;
    }
    Photographer photographer(QDir(QApplication::arguments().at(1)).absolutePath());
    const QTemporaryDir work; // for the animations
    QDir::setCurrent(work.path());
    shootResults(photographer);
    shootFolds(photographer);
    shootPages(photographer);
    shootPictures(photographer);
    shootMenus(photographer);
    shootQuestions(photographer);
    QDir::setCurrent(QDir::tempPath());
    return photographer.failed() ? 1 : 0;
}
