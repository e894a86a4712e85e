#include "app/startup/lateicon.h"

#include <QIconEngine>

namespace {

class LateIconEngine : public QIconEngine
{
public:
    explicit LateIconEngine(const QString &file)
        : m_file(file)
    {
    }

    QIconEngine *clone() const override { return new LateIconEngine(m_file); } // the caller's

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }

    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override
    {
        return icon().availableSizes(mode, state);
    }

private:
    [[nodiscard]] const QIcon &icon() const
    {
        if (m_icon.isNull()) {
            m_icon = QIcon(m_file);
        }
        return m_icon;
    }

    QString m_file;
    mutable QIcon m_icon;
};

} // namespace

QIcon lateIcon(const QString &file)
{
    return QIcon(new LateIconEngine(file)); // which takes it
}
