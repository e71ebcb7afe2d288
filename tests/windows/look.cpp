#include "tests/windows/look.h"

#include "platform/qt/theme.h"
#include "shell/globals.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/bench.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QRegularExpression>
#include <QScrollArea>
#include <map>

namespace tests
{

namespace
{

constexpr QSize kSmallScreen(800, 600); // pixels

std::string Named(const QWidget &widget)
{
    return widget.objectName().isEmpty() ? widget.metaObject()->className()
                                         : widget.objectName().toStdString();
}

// Whether the widget is a part that the toolkit made inside another, as a list's header is.
bool IsPart(const QWidget &widget)
{
    return widget.objectName().isEmpty() || widget.objectName().startsWith(QLatin1String("qt_"));
}

bool CutsItsText(const QWidget &widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        if (label->text().isEmpty())
            return false;
        const int height = label->hasHeightForWidth() ? label->heightForWidth(label->width())
                                                      : label->sizeHint().height();
        return label->height() < height ||
               (!label->wordWrap() && label->width() < label->minimumSizeHint().width());
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        return button->width() < button->minimumSizeHint().width() ||
               button->height() < button->minimumSizeHint().height();
    if (const auto *group = qobject_cast<const QGroupBox *>(&widget))
        return group->width() < group->fontMetrics().horizontalAdvance(group->title());
    return false;
}

// The program's name for a control, such as "cmdOk" or "txtTitle(1)", means nothing to a user.
bool IsInWords(const QString &name)
{
    static const QRegularExpression programsName(
        QStringLiteral("^(TV|LV|TB|SB|[a-z]{2,6}[A-Z][A-Za-z]*(\\([0-9]+\\))?)$"));
    return !name.trimmed().isEmpty() && !programsName.match(name).hasMatch();
}

QString SpokenName(QWidget &widget)
{
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&widget);
    return spoken == nullptr ? QString() : spoken->text(QAccessible::Name);
}

void LookAt(QWidget &widget, std::vector<std::string> &found)
{
    if (CutsItsText(widget))
        found.push_back("cut off: " + Named(widget));
    // The panes of the main and the search window are laid out with a frame that the window cuts
    // off; the panel's page is scrolled in its frame.
    const bool isCutFrame = widget.objectName() == QLatin1String("pctBorders") ||
                            widget.objectName() == QLatin1String("pctWeb");
    const bool scrolled = qobject_cast<const QScrollArea *>(widget.parentWidget()->parentWidget());
    if (!IsPart(widget) && !scrolled && !isCutFrame &&
        !widget.parentWidget()->rect().contains(widget.geometry()))
        found.push_back("outside of its parent: " + Named(widget));
    if (widget.focusPolicy() != Qt::NoFocus && !IsPart(widget) && widget.focusProxy() == nullptr &&
        !IsInWords(SpokenName(widget)))
        found.push_back("no name in words: " + Named(widget) + " '" +
                        SpokenName(widget).toStdString() + "'");
}

// The letter that reaches a widget from the keyboard; null where it has none.
QChar AccessKey(const QWidget &widget)
{
    QString text;
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        text = button->text();
    else if (const auto *group = qobject_cast<const QGroupBox *>(&widget))
        text = group->title();
    else if (const auto *label = qobject_cast<const QLabel *>(&widget); label && label->buddy())
        text = label->text();
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QChar() : QChar(static_cast<char16_t>(keys[0].key()));
}

// Access keys that reach more than one widget of the window.
void LookAtKeys(QWidget &window, std::vector<std::string> &found)
{
    std::map<QChar, std::string> names;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        const QChar key =
            widget->window() == &window && widget->isVisible() ? AccessKey(*widget) : QChar();
        if (key.isNull())
            continue;
        const auto [first, isNew] = names.try_emplace(key, Named(*widget));
        if (!isNew)
            found.push_back("access key of " + first->second + ": " + Named(*widget));
    }
}

} // namespace

std::vector<std::string> LookProblems(QWidget &window)
{
    std::vector<std::string> found;
    if (window.frameGeometry().width() > kSmallScreen.width() ||
        window.frameGeometry().height() > kSmallScreen.height())
        found.push_back(
            "larger than a small screen: " + std::to_string(window.frameGeometry().width()) +
            " x " + std::to_string(window.frameGeometry().height()));
    for (QWidget *widget : window.findChildren<QWidget *>())
        if (widget->isVisible() && widget->window() == &window)
            LookAt(*widget, found);
    LookAtKeys(window, found);
    return found;
}

void CheckLook(const std::string &name, const std::function<QWidget *()> &open,
               const std::function<void()> &close)
{
    const std::string shipped = QUENLIN_SHIPPED_TEXTS;
    bool dark = false;
    for (const char *language : {"English", "Deutsch", "Español", "Français"}) {
        const bool english = std::string(language) == "English";
        shell::TheGlobals().LanguageFilePath =
            english ? std::string() : shipped + "/" + language + ".qlt";
        platform::qt::ApplyPalette(dark);
        QWidget *window = open();
        ASSERT_NE(window, nullptr) << name;
        for (const bool isAsOpened : {true, false}) {
            if (!isAsOpened)
                platform::qt::ApplyPalette(dark = !dark); // the next one is opened in this theme
            SCOPED_TRACE(name + " " + language + (dark ? " dark" : " light"));
            AwaitPainted(*window);
            EXPECT_EQ(LookProblems(*window), std::vector<std::string>{});
            EXPECT_EQ(NamelessControls(*window), std::vector<std::string>{});
            KeepPainted(*window, name + "-" + language + (dark ? "-dark" : "-light"));
        }
        close();
        Settle(); // closed windows are deleted by the next event
    }
    platform::qt::ApplyPalette(false);
    shell::TheGlobals().LanguageFilePath.clear();
}

void InEachFontFamily(const std::function<void()> &check)
{
    const QFont before = QApplication::font();
    shell::TheGlobals().LanguageFilePath = std::string(QUENLIN_SHIPPED_TEXTS) + "/Deutsch.qlt";
    for (const char *family : {"DejaVu Sans", "Liberation Sans", "Cantarell"}) {
        ASSERT_TRUE(QFontDatabase::families().contains(QLatin1String(family))) << family;
        SCOPED_TRACE(family);
        QFont font = before;
        font.setFamily(QLatin1String(family));
        QApplication::setFont(font);
        check();
    }
    QApplication::setFont(before);
}

} // namespace tests
