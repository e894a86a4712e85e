#pragma once

#include "localchannel/sysguardqueststhread.h"
#include "service/diagnosis/netstatetestthread.h"
#include "ui/mainwindow/frame/windowdrag.h"
#include "ui/mainwindow/windowform.h"
#include "ui/mainwindow/windowtimers.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <QWidget>

#include <memory>

class Suggestions;
class WindowModes;

/// The program's only top-level window: a frameless chat window of 920 x 640 px. It brings its
/// pieces together; what is more than a few lines is done by one of them. Lives on the GUI thread.
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

    /// Closes the suggestions.
    void assoclose_windows();
    void min_windows();

    /// Sends what is typed, as far as it is not blank, and empties the input box.
    void send_messages();

    /// A hot question was clicked: it is asked, or answered from the local library.
    void hotRecom_list_click(QString question, qint64 questionId);

    /// The place of \a question in the local library, or -1.
    [[nodiscard]] int getLocationQuest_Num(QString question);

    /// A suggestion was clicked: it is asked in place of what is typed.
    void association_list_click(QString question, qint64 id);

    /// Runs once a second: fetches suggestions when what is typed has changed.
    void showAssociation();

    /// Gives the input box its typing style.
    void TextInput_color();

    /// Fetches suggestions for what is typed and shows them. Takes at most 0.4 s, in which the
    /// window stays responsive.
    void showAssociation_process();

    /// Sends the user to the IT department: to its site, or to its telephone from outside. May
    /// block for up to five seconds.
    void itReport_url();

    /// Shows the next page of the local questions.
    void switchHotQuestionLocation_change();

    /// Reads from the client's settings whether the desktop is logged in.
    void JudgeUser_ifLogined_ByConfig();

    /// Looks whether a program that the window depends on still runs, and falls back to local
    /// answers when none does. Blocks until the system has listed its processes, at most 30 s.
    void detectionProcess_VdiAndOmbra();

    // What the context menu of the input box does.
    void cut_slots();
    void copy_slots();
    void paste_slots();

    /// Shows the context menu of the input box at the mouse.
    void inputEdit_rightMenu();

    /// The screens have changed: centres the window on the one that begins at the desktop's origin.
    void slotResize();

    /// Centres the open picture preview on a screen of \a width x \a height px.
    void slotResize_ImagePreviewWid(int width, int height);

    /// The primary screen's resolution has changed: shows the window anew.
    void OnLogicalDotsPerInchChanged();
    void about_clicked();

    /// Shows the menu of the about button at the mouse.
    void about_menuClicked();

    /// Fetches the hot questions anew, every 30 minutes; refreshHotQuestions() takes what comes.
    void refreshHotQuestionsTimer();

    /// The service turned out to be unreachable: shows the local library unless it is shown
    /// already.
    void refreshLocalQA();

public:
    /// Asks the question that the guard tool posted, in the user's stead, and reports by
    /// QAFinished() when it has been dealt with.
    void sendSysguardQuest(QJsonObject obj);

    /// Starts the thread that takes the guard tool's questions.
    void listenSysguardMessage_thread();

    /// Fetches the hot questions for the first time, under a veil; getHotQuestion_right() takes
    /// what comes.
    void getHotQuestion_thread_right();

    /// What that fetch has brought; nothing means that the service is not to be had.
    void getHotQuestion_right(QJsonArray hotQuestions);

    /// What a later fetch has brought.
    void refreshHotQuestions(QJsonArray hotQuestions);

    /// Shows the first page of the local questions and says why they are shown.
    void switchHotQuestionLocation_show();

    /// Reads the files of the local library and adds what is not there yet.
    void parseLocalQA();

    /// The questions of the local library, from index 1 on; the entry before them is empty.
    [[nodiscard]] const QStringList &questLocation() const;

    /// Their answers, at the same indices.
    [[nodiscard]] const QStringList &answerLocation() const;

    /// Shows the local questions in place of the service's.
    void showLocalQA();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

    /// Esc closes the suggestions, wherever the focus is.
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] bool opensAboutMenu() const;
    void connectTitleBar();
    void connectInput();
    void connectTimers();
    void connectModes();
    void watchScreens();
    void stopSuggestions();

    QString m_configPath;
    NetStateTestThread m_diagnosis;
    bool m_opensAboutMenu; ///< read once, so that the button and what it does agree

    WindowForm m_form;
    std::unique_ptr<Suggestions> m_suggestions;
    WindowTimers m_timers;
    std::unique_ptr<WindowModes> m_modes;
    WindowDrag m_drag;
    std::unique_ptr<SysguardQuestsThread, SysguardQuestsEnd> m_guardThread;
};
