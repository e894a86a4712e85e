#include "ui/dialogs/opensoulicense.h"

#include "ui/style/focusmark.h"
#include "ui/style/styles.h"
#include "ui_opensoulicense.h"

namespace {

const QLatin1String titleStyle("font:12px \"Arail,Microsoft YaHei\";color: black;");
const QLatin1String headingStyle("font:12px \"Arail,Microsoft YaHei\";color: rgb(0,120,215);");
const QLatin1String
    scrollAreaStyle("QScrollBar:vertical{background:#FFFFFF;width:4px;}QScrollBar::handle:vertical{"
                    "background:#d9dee6;border-radius:2px;min-height:50px;}QScrollArea{border:2px;"
                    "color:blue;}");
const QLatin1String
    viewStyle("QTextEdit{background-color:white;color:rgb(29,38,51);font:12px Microsoft YaHei;"
              "border:none;selection-color:white;selection-background-color:rgb(0,120,215);}"
              "QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background:white;}"
              "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height:0px;}");

constexpr int longestWord = 1000;
constexpr QChar zeroWidthSpace(0x200b);
constexpr QChar firstCjk(0x2e80);

/// Lets lines break inside words that no person wrote: laying out a word takes time with the square
/// of its length, so one of a megabyte would freeze the program. CJK text breaks anywhere as it is.
QString withBreaksInEndlessWords(const QString &text)
{
    QString result;
    result.reserve(text.size() + text.size() / longestWord);
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() || character >= firstCjk ? 0 : length + 1;
        result.append(character);
        if (length == longestWord) {
            result.append(zeroWidthSpace);
            length = 0;
        }
    }
    return result;
}

} // namespace

OpenSouLicense::OpenSouLicense(QWidget *parent)
    : FramelessDialog(parent)
    , ui(std::make_unique<Ui::OpenSouLicense>())
{
    ui->setupUi(this);
    shadow = addCardShadow(ui->card);
    styleForm();
}

OpenSouLicense::~OpenSouLicense() = default;

void OpenSouLicense::styleForm()
{
    ui->logoButton->setStyleSheet(
        QStringLiteral("QPushButton{border-image:url(:/Images/logo-16.png);}"));
    ui->titleLabel->setStyleSheet(titleStyle);
    ui->opensrclicense_close->setStyleSheet(closeButtonStyle());
    ui->headingLabel->setStyleSheet(headingStyle);
    ui->scrollArea->setStyleSheet(scrollAreaStyle);
    ui->textView->setStyleSheet(viewStyle);
    ui->affirmButton->setStyleSheet(styles::blueButton);
    new FocusMark(ui->affirmButton);
}

void OpenSouLicense::connectButtons()
{
    connect(ui->opensrclicense_close, &QPushButton::clicked, this,
            &OpenSouLicense::on_close_clicked);
    connect(ui->affirmButton, &QPushButton::clicked, this, &OpenSouLicense::on_affirm_clicked);
}

void OpenSouLicense::showText(const QString &text)
{
    ui->textView->setHtml(withBreaksInEndlessWords(text));
    ui->textView->setTextInteractionFlags(Qt::TextSelectableByMouse);
}

void OpenSouLicense::on_close_clicked()
{
    close();
}

void OpenSouLicense::on_affirm_clicked()
{
    close();
}
