#pragma once

#include <QObject>
#include <QStringList>
#include <QUrl>

/// Catches what the desktop is asked to open while it lives: addresses of the schemes that it was
/// made for. One at a time for a scheme. GUI thread.
class OpenedLinks : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(OpenedLinks)

public:
    explicit OpenedLinks(const QStringList &schemes);
    ~OpenedLinks() override;

    /// The addresses, in order.
    [[nodiscard]] const QStringList &addresses() const { return m_addresses; }

public slots:
    /// What the desktop's services call.
    void open(const QUrl &url) { m_addresses.append(url.toString()); }

private:
    QStringList m_schemes;
    QStringList m_addresses;
};
