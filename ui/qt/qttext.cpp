#include "ui/qt/qttext.h"

#include <QList>

namespace ui::qt
{

namespace
{

// More bytes than a cell or tip can show; a longer text would only take time to measure.
constexpr std::size_t kLongestLine = 2000;

} // namespace

QString LabelText(std::string_view caption)
{
    std::string shown;
    shown.reserve(caption.size());
    for (std::size_t i = 0; i < caption.size(); ++i) {
        const char c = caption[i];
        const char next = i + 1 < caption.size() ? caption[i + 1] : '\0';
        if (c == '&') {
            if (next == '&')
                shown += caption[++i];
        } else if (c == '\r') {
            shown += '\n';
            i += next == '\n' ? 1 : 0;
        } else if (c == '\t') {
            shown += ' ';
        } else if (c == '\n' || static_cast<unsigned char>(c) >= ' ') {
            shown += c;
        }
    }
    return ToQt(shown);
}

QString MenuText(std::string_view caption)
{
    QString text = ToQt(caption);
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    text.replace(QLatin1Char('\r'), QLatin1Char(' '));
    const qsizetype shortcut = text.lastIndexOf(QLatin1String("  Alt+"));
    if (shortcut < 0)
        return text;
    const QString keys = text.mid(shortcut).trimmed();
    return text.left(shortcut).trimmed() + QLatin1Char('\t') + keys;
}

QString OneLineText(std::string_view text)
{
    QString line = ToQt(text.substr(0, kLongestLine));
    for (QChar &c : line)
        if (c < QLatin1Char(' ') || c == QChar(QChar::LineSeparator))
            c = QLatin1Char(' ');
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

QString OddCharactersShown(std::string_view text)
{
    QString shown;
    bool odd = false;
    for (const uint code : ToQt(text.substr(0, kLongestLine)).toUcs4()) {
        const auto category = QChar::category(static_cast<char32_t>(code));
        const bool unseen = category == QChar::Other_Control || category == QChar::Other_Format ||
                            category == QChar::Mark_NonSpacing ||
                            category == QChar::Mark_Enclosing ||
                            (QChar::isSpace(static_cast<char32_t>(code)) && code != ' ');
        odd |= unseen;
        shown += unseen ? QStringLiteral("[U+%1]").arg(code, 4, 16, QLatin1Char('0')).toUpper()
                        : QString::fromUcs4(reinterpret_cast<const char32_t *>(&code), 1);
    }
    return odd ? shown : QString();
}

QString TipText(const QString &text)
{
    if (text.isEmpty())
        return {};
    QString escaped = text.toHtmlEscaped();
    escaped.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    return QLatin1String("<qt>") + escaped + QLatin1String("</qt>");
}

} // namespace ui::qt
