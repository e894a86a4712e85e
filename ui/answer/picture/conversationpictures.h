#pragma once

#include "ui/answer/picture/picturedecoder.h"
#include "ui/answer/picture/picturestore.h"

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QVector>

#include <deque>
#include <memory>

class ImageDisplay;
class PictureRow;

/// A picture of the conversation.
struct ConversationPicture
{
    QString title; ///< of the answer that holds it
    bool isAnimated = false;
    QSize size;               ///< px; none when it cannot be read
    bool isSettled = false;   ///< it was decoded once, so the size is sure
    bool isAwaited = false;   ///< it is being decoded for its row
    qint64 cost = 0;          ///< of decoding it
    QPixmap shown;            ///< in its row; null unless it is kept
    QPointer<PictureRow> row; ///< null while the answer sleeps
};

/// The pictures of the conversation, numbered from 0 through all its answers, and the window that
/// shows one of them large. Their data are kept as they came; decoded are the one in that window
/// and those that rows show, of which the newest and those that are seen keep their picture, and
/// others are decoded again when they are seen. GUI thread.
class ConversationPictures : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ConversationPictures)

public:
    /// What rows show takes so many bytes in all, unless more than that is seen at a time.
    static constexpr qint64 mostShownBytes = qint64(24) * 1024 * 1024;

    /// A picture that costs more is decoded on another thread, whoever waits for it.
    static constexpr qint64 mostCostAtOnce = 8'300'000;

    ConversationPictures();

    /// Takes the preview window along.
    ~ConversationPictures() override;

    [[nodiscard]] int count() const { return m_pictures.size(); }
    [[nodiscard]] const ConversationPicture &at(int number) const { return m_pictures.at(number); }

    /// Adds the picture \a data of an answer with \a title, on a screen of \a ratio, and returns
    /// its number. It is decoded at once if that costs no more than \a costLeft, which it takes
    /// from.
    int add(const QByteArray &data, const QString &title, bool isAnimated, qreal ratio,
            qint64 &costLeft);

    /// Lets \a row show picture \a number, now or once it is decoded.
    void showIn(PictureRow *row, int number);

    /// Whether the row of picture \a number may be deleted: it would be made again as it was.
    [[nodiscard]] bool maySleep(int number) const;

    /// Decodes picture \a number now. Null when it cannot be read.
    [[nodiscard]] QPixmap decoded(int number);

    /// What rows show, in bytes.
    [[nodiscard]] qint64 shownBytes() const { return m_shownBytes; }

    /// Shows the preview on picture \a number, in place of one that is open, and returns it.
    ImageDisplay *openPreview(int number);

    /// Tells the preview, if one is open, how many pictures there are by now.
    void tellPreview();

    /// Hands picture \a number to the open preview.
    void showInPreview(int number);

    /// The same, but past the last picture the preview stays where it is.
    void showNextInPreview(int number);

    /// The open preview window; null when there is none.
    [[nodiscard]] ImageDisplay *preview() const { return imagePreview.get(); }

    /// Puts picture \a number on the clipboard, an animated one as the first frame of its file. One
    /// that takes long is put there when it is decoded, unless something else is by then. Nothing
    /// happens when there is none.
    void copy(int number);

private:
    void settle(int number, const QSize &size);
    void showInRow(int number);
    void want(int number, PictureDecoder::Turn turn);
    void takeForRow(int number, const RowPicture &picture);
    void keepShown(int number, const QPixmap &shown);
    void dropShown(int number);
    void makeRoom(int newest);
    [[nodiscard]] bool isDear(int number) const;
    [[nodiscard]] QPixmap forPreview(int number);
    void takeWhole(int number, PictureDecoder::Purpose purpose);
    void dropCopy() { m_copied = none; }

    static constexpr int none = -1;

    QVector<ConversationPicture> m_pictures;
    std::deque<int> m_kept; ///< numbers of those whose row picture is kept, the oldest in front
    qint64 m_shownBytes = 0;
    PictureStore m_store;
    PictureDecoder m_decoder; ///< ends before the store
    int m_previewed = none;   ///< that is decoded for the preview
    int m_copied = none;      ///< that is decoded for the clipboard
    std::unique_ptr<ImageDisplay> imagePreview;
    static bool previewOpened; ///< whether a preview was ever opened in this process
};
