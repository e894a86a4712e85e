#include "service/request/hotqueststhread.h"

#include "app/base/startgate.h"

HotQuestsThread::HotQuestsThread(QObject * /*parent*/)
    : QThread(nullptr)
{
}

void HotQuestsThread::run()
{
    startgate::pass();
    emit hotQuests_signal(m_idpInterface.hot_questions());
}
