#include "ui/answer/picture/conversationpictures.h"

#include "ui/preview/animationfile.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QClipboard>

bool ConversationPictures::previewOpened = false;

ConversationPictures::ConversationPictures() = default;
ConversationPictures::~ConversationPictures() = default;

ImageDisplay *ConversationPictures::openPreview(int number)
{
    const ConversationPicture &picture = m_pictures.at(number);
    if (previewOpened) {
        imagePreview.reset(); // one window at a time
    }
    previewOpened = true;
    imagePreview = std::make_unique<ImageDisplay>();
    imagePreview->PreviewWin(picture.decoded(), picture.title, picture.animated, number);
    tellPreview();
    imagePreview->show();
    imagePreview->setAttribute(Qt::WA_QuitOnClose, false);
    return imagePreview.get();
}

void ConversationPictures::tellPreview()
{
    if (imagePreview != nullptr) {
        imagePreview->setPictureCount(m_pictures.size());
    }
}

void ConversationPictures::showInPreview(int number)
{
    const ConversationPicture &picture = m_pictures.at(number);
    imagePreview->changeImage(picture.decoded(), picture.title, picture.animated, number);
}

void ConversationPictures::showNextInPreview(int number)
{
    if (number < m_pictures.size()) {
        showInPreview(number);
    } else {
        imagePreview->setCurrentIndex(m_pictures.size() - 1);
    }
}

void ConversationPictures::copy(int number) const
{
    if (number < 0 || number >= m_pictures.size()) {
        return;
    }
    const ConversationPicture &picture = m_pictures.at(number);
    if (picture.animated && !picture.data.isEmpty()) {
        QApplication::clipboard()->setImage(QImage(animationFile(number)));
    } else {
        QApplication::clipboard()->setPixmap(picture.decoded());
    }
}
