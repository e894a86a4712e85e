#pragma once

#include "ui/answer/picture/inlinepicture.h"

#include <QVector>

#include <memory>

class ImageDisplay;

/// The pictures of the conversation, numbered from 0 through all its answers, and the window that
/// shows one of them large. GUI thread.
class ConversationPictures
{
    Q_DISABLE_COPY(ConversationPictures)

public:
    ConversationPictures();

    /// Takes the preview window along.
    ~ConversationPictures();

    /// All of them, in the order of their numbers; new ones are appended.
    [[nodiscard]] QVector<ConversationPicture> &all() { return m_pictures; }
    [[nodiscard]] const QVector<ConversationPicture> &all() const { return m_pictures; }

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

    /// Puts picture \a number on the clipboard, an animated one as the first frame of its file.
    /// Nothing happens when there is none.
    void copy(int number) const;

private:
    QVector<ConversationPicture> m_pictures;
    std::unique_ptr<ImageDisplay> imagePreview;
    static bool previewOpened; ///< whether a preview was ever opened in this process
};
