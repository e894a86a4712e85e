#include "ui/answer/picture/picturedecoder.h"

#include "ui/answer/picture/inlinepicture.h"

#include <QCoreApplication>
#include <QPointer>
#include <QRunnable>

PictureDecoder *PictureDecoder::instance()
{
    static QPointer<PictureDecoder> decoder;
    if (decoder == nullptr) {
        decoder = new PictureDecoder(QCoreApplication::instance());
    }
    return decoder;
}

PictureDecoder::PictureDecoder(QObject *parent)
    : QObject(parent)
{
    m_pool.setMaxThreadCount(1);
}

PictureDecoder::~PictureDecoder()
{
    m_pool.clear();
    m_pool.waitForDone();
}

int PictureDecoder::decodeLater(const QByteArray &data, const QSize &size)
{
    const int number = ++m_last;
    m_pool.start(QRunnable::create([this, number, data, size] {
        const QImage whole = decodeImage(data);
        const QImage image = whole.isNull()
                               ? whole
                               : whole.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        emit decoded(number, image); // queued: the receivers live on the GUI thread
    }));
    return number;
}
