#include "ui/qt/textmap.h"

#include "runtime/utf8.h"
#include "ui/qt/qttext.h"

#include <algorithm>

namespace ui::qt
{

namespace
{

// The length of a part of the text.
struct Length {
    std::size_t bytes = 0;
    int characters = 0;
    int units = 0; // UTF-16 units in the widget
};

// A step is one character of the text, or a CR LF in a text of several lines.
Length StepAt(std::string_view text, bool multiLine, std::size_t at)
{
    if (multiLine && text.substr(at, 2) == "\r\n")
        return {2, 2, 1};
    const std::size_t bytes = runtime::LeftCharacters(text.substr(at), 1).size();
    if (bytes == 1 && static_cast<unsigned char>(text[at]) < 0x80)
        return {1, 1, 1};
    const int units = static_cast<int>(ToQt(text.substr(at, bytes)).size());
    return {bytes, 1, units};
}

bool IsControl(QChar c)
{
    return c < QLatin1Char(' ') || c == QChar(0x7f) || c == QChar(QChar::LineSeparator) ||
           c == QChar(QChar::ParagraphSeparator);
}

QString ShownStep(std::string_view bytes, bool multiLine)
{
    if (multiLine && (bytes == "\r\n" || bytes == "\r" || bytes == "\n"))
        return QStringLiteral("\n");
    QString shown = bytes.size() == 1 && static_cast<unsigned char>(bytes[0]) < 0x80
                        ? QString(QLatin1Char(bytes[0]))
                        : ToQt(bytes);
    for (QChar &c : shown)
        if (IsControl(c) && !(multiLine && c == QLatin1Char('\t')))
            c = QLatin1Char(' ');
    return shown;
}

// The steps from the beginning of the text whose `counted` length is at most `limit`.
Length LengthWithin(std::string_view text, bool multiLine, int Length::*counted, int limit)
{
    Length length;
    while (length.bytes < text.size()) {
        const Length step = StepAt(text, multiLine, length.bytes);
        if (length.*counted + step.*counted > limit)
            break;
        length.bytes += step.bytes;
        length.characters += step.characters;
        length.units += step.units;
    }
    return length;
}

// The byte of `text` that the widget shows at the unit `shownPosition`.
std::size_t ByteOfShown(std::string_view text, bool multiLine, int shownPosition)
{
    return LengthWithin(text, multiLine, &Length::units, shownPosition).bytes;
}

std::string TypedText(const QString &typed, bool multiLine)
{
    QString text = typed;
    if (multiLine)
        text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return FromQt(text);
}

} // namespace

QString ShownText(std::string_view text, bool multiLine)
{
    QString shown;
    shown.reserve(static_cast<qsizetype>(text.size()));
    for (std::size_t at = 0; at < text.size();) {
        const Length step = StepAt(text, multiLine, at);
        shown += ShownStep(text.substr(at, step.bytes), multiLine);
        at += step.bytes;
    }
    return shown;
}

int ShownPosition(std::string_view text, bool multiLine, int position)
{
    return LengthWithin(text, multiLine, &Length::characters, position).units;
}

int TextPosition(std::string_view text, bool multiLine, int shownPosition)
{
    return LengthWithin(text, multiLine, &Length::units, shownPosition).characters;
}

// Typed text ends at the caret: when equal characters are in a row, the new ones are those before
// the caret.
std::string EditedText(std::string_view text, bool multiLine, const QString &shown, int caret)
{
    const QString before = ShownText(text, multiLine);
    const qsizetype shorter = std::min(before.size(), shown.size());
    const qsizetype afterCaret = shown.size() - std::clamp<qsizetype>(caret, 0, shown.size());
    qsizetype sameEnd = 0;
    while (sameEnd < std::min(shorter, afterCaret) &&
           before[before.size() - 1 - sameEnd] == shown[shown.size() - 1 - sameEnd])
        ++sameEnd;
    qsizetype same = 0;
    while (same < shorter - sameEnd && before[same] == shown[same])
        ++same;
    // Two surrogates are one character.
    if (same > 0 && before[same - 1].isHighSurrogate())
        --same;
    if (sameEnd > 0 && before[before.size() - sameEnd].isLowSurrogate())
        --sameEnd;
    const std::size_t from = ByteOfShown(text, multiLine, static_cast<int>(same));
    const std::size_t to = ByteOfShown(text, multiLine, static_cast<int>(before.size() - sameEnd));
    std::string edited(text.substr(0, from));
    edited += TypedText(shown.mid(same, shown.size() - same - sameEnd), multiLine);
    edited += text.substr(to);
    return edited;
}

} // namespace ui::qt
