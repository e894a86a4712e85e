#include "service/request/hotqueststhread.h"

HotQuestsThread::HotQuestsThread(QObject * /*parent*/)
    : QThread(nullptr)
{
}

void HotQuestsThread::run()
{
    emit hotQuests_signal(m_idpInterface.hot_questions());
}
