#include "ui/dialogs/aboutdialog.h"

#include "app/base/apppaths.h"
#include "app/base/logstream.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "ui/dialogs/opensoulicense.h"
#include "ui/dialogs/rightsnotice.h"
#include "ui/style/focusmark.h"
#include "ui_aboutdialog.h"

#include <QFile>
#include <QTimer>

namespace {

constexpr int licenceButtonPauseMs = 1000;

constexpr int productTextSize = 24;
constexpr int versionTextSize = 14;

const QLatin1String blueTextStyle("QLabel{color:rgb(0,120,215); background-color:transparent;}");
const QLatin1String noticeStyle("color: gray; font: 12px \"Arail,Microsoft YaHei\";");
const QLatin1String linkStyle("QPushButton{background-color:transparent;color:rgb(0,120,215);"
                              "font:12px Microsoft YaHei;border:none;}");
const QLatin1String
    frameStyle("QFrame{border-width:0;border-style:outset;background-color:transparent;}");
const QLatin1String
    dividerStyle("QLabel{border-width:0;border-style:outset;background-color: rgb(80, 80, 80);}");

QString pictureStyle(QLatin1String image)
{
    return QStringLiteral("border-image:url(:/Images/%1);background-color:transparent;").arg(image);
}

void setTextSize(QLabel *label, int pixels, QFont::Weight weight)
{
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(pixels);
    font.setWeight(weight);
    label->setFont(font);
}

} // namespace

AboutDialog::AboutDialog(QWidget *parent)
    : FramelessDialog(parent)
    , iniPath(miravelConfigPath())
    , licensePath(licenceTextPath())
    , ui(std::make_unique<Ui::AboutDialog>())
{
    ui->setupUi(this);
    addCardShadow(ui->card);
    styleForm();
    fillForm();
    connect(ui->about_close, &QPushButton::clicked, this, &AboutDialog::close);
    connect(ui->licenseButton, &QPushButton::clicked, this, &AboutDialog::opensrclicense_clicked);
}

AboutDialog::~AboutDialog() = default;

void AboutDialog::styleForm()
{
    ui->productLabel->setStyleSheet(blueTextStyle);
    ui->versionLabel->setStyleSheet(blueTextStyle);
    ui->about_close->setStyleSheet(closeButtonStyle());
    ui->noticeLabel->setStyleSheet(noticeStyle);
    ui->licenseButton->setStyleSheet(linkStyle);
    new FocusMark(ui->licenseButton);
    ui->iconLabel->setStyleSheet(pictureStyle(QLatin1String("Sysico.png")));
    ui->makerLabel->setStyleSheet(pictureStyle(QLatin1String("Ostrelico.png")));
    ui->dividerLabel->setStyleSheet(dividerStyle);
    for (QFrame *frame : {ui->headerFrame, ui->bodyFrame, ui->productFrame, ui->footerFrame}) {
        frame->setStyleSheet(frameStyle);
    }
}

void AboutDialog::fillForm()
{
    setTextSize(ui->productLabel, productTextSize, QFont::Bold);
    setTextSize(ui->versionLabel, versionTextSize, QFont::Normal);
    showVersion();
    ui->noticeLabel->setText(QStringLiteral("©") + rightsNotice());
}

void AboutDialog::showVersion()
{
    const SettingsFile settings(iniPath);
    version = settings.value(settingsName(SettingsKey::ShownVersion)).toString();
    LOG_INFO() << "Current version = " << version;
    ui->versionLabel->setText(version);
}

void AboutDialog::opensrclicense_clicked()
{
    LOG_DEBUG() << "Enter on_opensrclicense_clicked";
    delete licenseDlg; // one whose text could not be read was never shown
    licenseDlg = new OpenSouLicense(this);
    licenseDlg->setAttribute(Qt::WA_DeleteOnClose);
    licenseDlg->setModal(true);
    licenseDlg->connectButtons();

    QFile file(licensePath);
    if (licensePath.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        LOG_WARNING() << "Couldn't open json file.";
        return;
    }
    licenseDlg->showText(QString::fromLocal8Bit(file.readAll()));
    licenseDlg->show();
    ui->licenseButton->setEnabled(false);
    QTimer::singleShot(licenceButtonPauseMs, ui->licenseButton,
                       [button = ui->licenseButton] { button->setEnabled(true); });
}
