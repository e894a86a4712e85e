#include "app/startup/translation.h"

#include "app/base/logstream.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

QString translationFile(const QStringList &languages)
{
    const QString first = languages.value(0);
    const QString language = first.left(first.indexOf(QLatin1Char('-'))).toLower();
    for (const QChar letter : language) {
        if (letter < QLatin1Char('a') || letter > QLatin1Char('z')) {
            return {}; // no name of a language, and none that may become part of a path
        }
    }
    if (language.size() < 2 || language == QLatin1String("zh")) {
        return {};
    }
    return QStringLiteral("Miravel_%1.qm").arg(language);
}

void installTranslation(QCoreApplication &app, const QString &folder)
{
    const QString file = translationFile(QLocale::system().uiLanguages());
    if (file.isEmpty()) {
        return;
    }
    const QString path = folder + QLatin1Char('/') + file;
    if (!QFileInfo::exists(path)) { // QTranslator itself would look under a dozen names
        return;
    }
    auto *translator = new QTranslator(&app);
    if (translator->load(path)) {
        LOG_INFO() << "translation: " << file;
        QCoreApplication::installTranslator(translator);
    } else {
        LOG_WARNING() << "translation cannot be read: " << file;
    }
}
