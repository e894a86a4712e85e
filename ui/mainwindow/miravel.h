#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>

class HotQuestionsColumn;
class HotQuestsThread;
class InputPanel;
class LoadingOverlay;
class QARegion;
class SysguardQuestsThread;
class TitleBar;

/// The program's only top-level window: a frameless chat window of 920 x 640 px. It decides whether
/// questions go to the service or are answered from what is at hand. Lives on the GUI thread.
class Miravel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(Miravel)

public:
    explicit Miravel(QWidget *parent = nullptr);

    /// Waits at most 2 s for each thread that still runs.
    ~Miravel() override;

    /// Starts in online mode at once: the virtual-desktop client started the program.
    void startForVdiClient();

    /// Starts online when the desktop is logged in, otherwise offline: the launcher started the
    /// program.
    void startForLauncher();

signals:
    void beginGetHotQuests();

    /// The answer region is ready for questions of others.
    void rightRegionSuccess();

    /// A question of others has been dealt with.
    void QAFinished();

public slots:
    void close_windows();

    /// Removes the animated pictures that an earlier run saved.
    void delete_gif();
    void min_windows();

    /// Sends what is typed, as far as it is not blank, and empties the input box.
    void send_messages();

    /// A hot question was clicked: it is asked, or answered from the local library.
    void hotRecom_list_click(QString question, qint64 questionId);

    /// The place of \a question in the local library, or -1.
    [[nodiscard]] int getLocationQuest_Num(QString question);

    /// Runs once a second while the user may be typing.
    void showAssociation();

    /// Gives the input box its typing style.
    void TextInput_color();

    /// Shows the next page of the local questions.
    void switchHotQuestionLocation_change();

    /// Reads from the client's settings whether the desktop is logged in.
    void JudgeUser_ifLogined_ByConfig();
    void about_clicked();

    /// Fetches the hot questions anew; runs every 30 minutes.
    void refreshHotQuestionsTimer();

    /// Asks the question that the guard tool posted, in the user's stead, and reports by
    /// QAFinished() when it has been dealt with.
    void sendSysguardQuest(QJsonObject obj);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void buildForm();
    void buildTitleBar();
    void buildInput();
    void centreOnScreen();
    void listenSysguardMessage_thread();
    void switchToOnlineMode();
    void buildHotQuestions();
    void getHotQuestion_thread_right();
    void getHotQuestion_right(const QJsonArray &hotQuestions);
    void refreshHotQuestions(const QJsonArray &hotQuestions);
    void switchHotQuestionLocation_show();
    void showLocalQA();
    void showServiceQuestions(const QJsonArray &hotQuestions);
    void showNextHotPage();
    [[nodiscard]] HotQuestsThread *startHotWorker(void (Miravel::*result)(const QJsonArray &));
    void stopHotWorker(const QPointer<HotQuestsThread> &worker);
    [[nodiscard]] static QString notLoggedInText();

    /// Answers \a question, or says why it cannot be asked yet. The two texts begin the log line.
    void askOrExplain(const QString &question, const char *explainedLog, const char *askedLog);

    QString m_configPath;
    bool isGetHotQuests = false;     ///< the first hot-questions fetch has returned
    bool netHotWork = false;         ///< the last hot-questions fetch failed
    bool getIDP = false;             ///< questions and hot list come from the service
    bool startedByVdiClient = false; ///< only the client's process counts as the caller
    bool panelReady = false;
    bool neverLoggedOut = true; ///< no login check has found the desktop logged out
    bool loggedIn = false;      ///< a login check has found the desktop logged in
    bool menuOpen = false;      ///< the input box's own context menu is showing
    QString lastInputText;
    int hotPage = 0;                       ///< where the page of hot questions that is shown begins
    QJsonArray m_hotQuestions;             ///< the service's, that the next page is taken from
    QStringList questLocation{QString()};  ///< questions of the local library, from index 1 on
    QStringList answerLocation{QString()}; ///< their answers, at the same indices
    QPoint m_dragOffset;

    QWidget *m_inner = nullptr;
    QARegion *m_region = nullptr;
    InputPanel *m_inputPanel = nullptr;
    HotQuestionsColumn *m_hotColumn = nullptr;
    std::unique_ptr<LoadingOverlay> m_overlay;
    QPointer<HotQuestsThread> m_hotWorker;
    QPointer<HotQuestsThread> m_refreshWorker;
    SysguardQuestsThread *m_guardThread = nullptr; ///< deleted at the end, if it has ended by then
    QTimer m_associationTick;
    QTimer m_loginPoll;
    QTimer m_hotRefresh;
};
