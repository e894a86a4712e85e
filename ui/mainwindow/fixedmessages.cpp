#include "ui/mainwindow/fixedmessages.h"

#include <QCoreApplication>

namespace fixedmessages {

QString greeting()
{
    return QCoreApplication::translate("Miravel",
                                       "您好，我是Miravel，请简要描述您的问题或错误提示!");
}

QString notLoggedIn()
{
    return QCoreApplication::translate(
        "Miravel", "您好，我是Miravel，您的桌面尚未登录鉴权，暂时无法提供智能服务。"
                   "您可在“热门问答”区域查看常见问题。"
                   "我将会在您登录鉴权后，提供更多智能服务。");
}

QString noNetwork()
{
    return QCoreApplication::translate("Miravel",
                                       "您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。"
                                       "您可在“热门问答”区域查看常见问题。");
}

QString refreshFailed()
{
    return QCoreApplication::translate("Miravel",
                                       "热门问题刷新失败，您可在“热门问答”区域查看常见问题。");
}

QString refreshed()
{
    return QCoreApplication::translate("Miravel", "热门问题刷新成功。");
}

} // namespace fixedmessages
