#include "platform/qt/toolkitlanguage.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <memory>
#include <optional>
#include <utility>

namespace platform::qt
{

namespace
{

// The translator in use; null for English. It is destroyed before the application.
QTranslator *&InUse()
{
    static QTranslator *translator = nullptr;
    return translator;
}

// A locale with the language of this name. The name can differ by country ("español de España"), so
// the locales of all countries are tried.
std::optional<QLocale> LocaleOf(const QString &name)
{
    if (name.isEmpty())
        return std::nullopt;
    const auto all =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    for (const QLocale &locale : all)
        if (locale.nativeLanguageName().compare(name, Qt::CaseInsensitive) == 0)
            return locale;
    return std::nullopt;
}

} // namespace

bool ChooseToolkitLanguage(const QString &name)
{
    delete std::exchange(InUse(), nullptr);
    const std::optional<QLocale> locale = LocaleOf(name);
    if (!locale)
        return false;
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    if (!translator->load(*locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        return false;
    InUse() = translator.release();
    QObject::connect(InUse(), &QObject::destroyed, InUse(), [] { InUse() = nullptr; });
    return QCoreApplication::installTranslator(InUse());
}

} // namespace platform::qt
