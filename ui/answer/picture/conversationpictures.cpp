#include "ui/answer/picture/conversationpictures.h"

#include "ui/answer/picture/picturerow.h"
#include "ui/preview/animationfile.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int bytesPerPixel = 4;

/// After the first picture of the window, which nothing may delay.
constexpr int cleaningDelayMs = 10'000;

qint64 bytesOf(const QPixmap &pixmap)
{
    return pixelsOf(pixmap.size()) * bytesPerPixel;
}

} // namespace

bool ConversationPictures::previewOpened = false;

ConversationPictures::ConversationPictures()
    : m_store(QDir::tempPath())
    , m_decoder(m_store)
{
    connect(&m_decoder, &PictureDecoder::rowDecoded, this, &ConversationPictures::takeForRow);
    connect(&m_decoder, &PictureDecoder::wholeDecoded, this, &ConversationPictures::takeWhole);
    QTimer::singleShot(cleaningDelayMs, &m_decoder, &PictureDecoder::removeLeftFiles);
}

ConversationPictures::~ConversationPictures() = default;

int ConversationPictures::add(const QByteArray &data, const QString &title, bool isAnimated,
                              qreal ratio, qint64 &costLeft)
{
    const int number = m_pictures.size();
    ConversationPicture picture;
    picture.title = title;
    picture.isAnimated = isAnimated;
    picture.size = pictureSize(data);
    picture.cost = decodingCost(data, picture.size);
    m_pictures.append(picture);
    m_store.add(data);
    if (isDecodable(picture.size) && picture.cost > costLeft) {
        return number; // the header gives it its place
    }
    costLeft -= picture.cost;
    const RowPicture decoded = decodeForRow(data, isAnimated, ratio);
    settle(number, decoded.size);
    if (!decoded.shown.isNull()) {
        keepShown(number, QPixmap::fromImage(decoded.shown));
    }
    return number;
}

void ConversationPictures::settle(int number, const QSize &size)
{
    ConversationPicture &picture = m_pictures[number];
    const bool isChanged = picture.size != size;
    picture.isSettled = true;
    picture.size = size;
    if (size.isEmpty()) {
        m_store.drop(number);
    }
    if (isChanged && picture.row != nullptr) {
        picture.row->setPlace(size, picture.isAnimated);
    }
}

void ConversationPictures::showIn(PictureRow *row, int number)
{
    ConversationPicture &picture = m_pictures[number];
    picture.row = row;
    row->setPlace(picture.size, picture.isAnimated);
    connect(row, &PictureRow::pictureWanted, this,
            [this, number] { want(number, PictureDecoder::Turn::First); });
    if (picture.isSettled) {
        showInRow(number);
    } else {
        want(number, PictureDecoder::Turn::Last);
    }
}

void ConversationPictures::showInRow(int number)
{
    const ConversationPicture &picture = m_pictures.at(number);
    if (picture.row == nullptr || picture.size.isEmpty()) {
        return;
    }
    if (picture.isAnimated && picture.row->play(animationFile(number), picture.size)) {
        dropShown(number);
    } else if (picture.shown.isNull()) {
        want(number, PictureDecoder::Turn::First);
    } else {
        picture.row->showStill(picture.shown);
    }
}

void ConversationPictures::want(int number, PictureDecoder::Turn turn)
{
    ConversationPicture &picture = m_pictures[number];
    if (!picture.isAwaited) {
        picture.isAwaited = true;
        m_decoder.decodeForRow(number, picture.isAnimated, picture.row->devicePixelRatioF(), turn);
    } else if (turn == PictureDecoder::Turn::First) {
        m_decoder.hurry(number);
    }
}

void ConversationPictures::takeForRow(int number, const RowPicture &picture)
{
    m_pictures[number].isAwaited = false;
    if (!m_pictures.at(number).isSettled) {
        settle(number, picture.size);
    }
    if (!picture.shown.isNull()) {
        keepShown(number, QPixmap::fromImage(picture.shown));
        showInRow(number);
    }
}

void ConversationPictures::keepShown(int number, const QPixmap &shown)
{
    dropShown(number);
    m_pictures[number].shown = shown;
    m_kept.push_back(number);
    m_shownBytes += bytesOf(shown);
    makeRoom(number);
}

void ConversationPictures::dropShown(int number)
{
    ConversationPicture &picture = m_pictures[number];
    if (!picture.shown.isNull()) {
        m_shownBytes -= bytesOf(picture.shown);
        picture.shown = {};
        m_kept.erase(std::find(m_kept.begin(), m_kept.end(), number));
    }
}

/// Drops the oldest that are not seen, but not the newest, whose row may still be to come.
void ConversationPictures::makeRoom(int newest)
{
    const std::deque<int> kept = m_shownBytes > mostShownBytes ? m_kept : std::deque<int>();
    for (const int number : kept) {
        const QPointer<PictureRow> row = m_pictures.at(number).row;
        if (m_shownBytes <= mostShownBytes) {
            return;
        }
        if (number == newest || (row != nullptr && row->isSeen())) {
            continue;
        }
        dropShown(number);
        if (row != nullptr) {
            row->dropPicture();
        }
    }
}

bool ConversationPictures::maySleep(int number) const
{
    const ConversationPicture &picture = m_pictures.at(number);
    return picture.isSettled && (picture.row == nullptr || !picture.row->isPlaying());
}

QPixmap ConversationPictures::decoded(int number)
{
    const QByteArray data = m_store.data(number);
    const QPixmap pixmap = data.isEmpty() ? QPixmap() : decodePicture(data);
    if (!m_pictures.at(number).isSettled) {
        settle(number, pixmap.size());
    }
    return pixmap;
}

bool ConversationPictures::isDear(int number) const
{
    return m_pictures.at(number).cost > mostCostAtOnce && !m_pictures.at(number).size.isEmpty();
}

/// The picture, or nothing yet when it takes long; then it is shown once it is decoded.
QPixmap ConversationPictures::forPreview(int number)
{
    m_previewed = none;
    if (!isDear(number)) {
        return decoded(number);
    }
    m_previewed = number;
    m_decoder.decodeWhole(number, PictureDecoder::Purpose::Preview);
    return {};
}

ImageDisplay *ConversationPictures::openPreview(int number)
{
    const ConversationPicture picture = m_pictures.at(number);
    if (previewOpened) {
        imagePreview.reset(); // one window at a time
    }
    previewOpened = true;
    imagePreview = std::make_unique<ImageDisplay>();
    const QPixmap pixmap = forPreview(number);
    imagePreview->PreviewWin(pixmap, picture.title, picture.isAnimated && m_previewed == none,
                             number);
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
    const ConversationPicture picture = m_pictures.at(number);
    const QPixmap pixmap = forPreview(number);
    imagePreview->changeImage(pixmap, picture.title, picture.isAnimated && m_previewed == none,
                              number);
}

void ConversationPictures::showNextInPreview(int number)
{
    if (number < m_pictures.size()) {
        showInPreview(number);
    } else {
        imagePreview->setCurrentIndex(m_pictures.size() - 1);
    }
}

void ConversationPictures::copy(int number)
{
    if (number < 0 || number >= m_pictures.size()) {
        return;
    }
    m_copied = none;
    const ConversationPicture &picture = m_pictures.at(number);
    QClipboard *clipboard = QApplication::clipboard();
    if (isDear(number)) {
        connect(clipboard, &QClipboard::dataChanged, this, &ConversationPictures::dropCopy,
                Qt::UniqueConnection);
        m_copied = number;
        m_decoder.decodeWhole(number, PictureDecoder::Purpose::Clipboard);
    } else if (picture.isAnimated && !picture.size.isEmpty()) {
        clipboard->setImage(QImage(animationFile(number)));
    } else {
        clipboard->setPixmap(decoded(number));
    }
}

void ConversationPictures::takeWhole(int number, PictureDecoder::Purpose purpose)
{
    const bool isForPreview = purpose == PictureDecoder::Purpose::Preview;
    int &awaited = isForPreview ? m_previewed : m_copied;
    if (number != awaited) {
        return; // something else is wanted by now
    }
    awaited = none;
    if (!isForPreview) {
        QApplication::clipboard()->setImage(m_decoder.takeWhole());
    } else if (imagePreview != nullptr && imagePreview->isVisible()) {
        const ConversationPicture picture = m_pictures.at(number);
        imagePreview->changeImage(QPixmap::fromImage(m_decoder.takeWhole()), picture.title,
                                  picture.isAnimated, number);
    }
}
