#pragma once

#include <QLabel>

/// A label for texts from elsewhere. A link in it that is clicked, or entered from the keyboard,
/// is opened only if it leads to the web or to a mail address, and only while openExternalLinks()
/// says so; every other one is named in the log. A tool tip says where a link leads, under the
/// mouse and under the keyboard.
class LinkLabel : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY(LinkLabel)

public:
    explicit LinkLabel(QWidget *parent);

protected:
    bool event(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void takeLinks();
    void activate(const QString &address);
    void showHovered(const QString &address);
    void showFocused();
    void announceFocused();
    [[nodiscard]] QRect placeOfFocused() const;
    [[nodiscard]] QString focusedAddress() const;
};
