#pragma once

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QSize>
#include <QThreadPool>

/// Decodes pictures that would keep the window busy, one after another on a thread of its own, so
/// that no more than one of them is ever whole in memory. Lives on the GUI thread.
class PictureDecoder : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(PictureDecoder)

public:
    /// The one of the application, which owns it.
    [[nodiscard]] static PictureDecoder *instance();

    /// Drops what waits and lets the picture that is being decoded end.
    ~PictureDecoder() override;

    /// Decodes the picture \a data and scales it down into \a size, proportions kept. Returns the
    /// number under which decoded() tells of it.
    [[nodiscard]] int decodeLater(const QByteArray &data, const QSize &size);

signals:
    /// Picture \a number is \a image; null when the data are none.
    void decoded(int number, QImage image);

private:
    explicit PictureDecoder(QObject *parent);

    QThreadPool m_pool;
    int m_last = 0;
};
