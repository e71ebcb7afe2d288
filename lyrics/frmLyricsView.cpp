#include "lyrics/frmLyricsView.h"

#include "lyrics/lyricsform.h"
#include "metadata/tagtext.h"
#include "platform/qt/text.h"
#include "runtime/text.h"
#include "shell/language.h"
#include "ui/qt/bindings.h"
#include "ui/qt/form.h"
#include "ui/qt/marking.h"

#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>

namespace lyrics
{

namespace
{

using Flag = QScopedValueRollback<bool>;

constexpr int kLinesAround = 3; // that stay visible above and below the highlighted one

// Characters that a font shows as an empty box, such as the NUL that many programs write after a
// text.
bool HasNoShape(QChar c)
{
    return c.category() == QChar::Other_Control && c != QLatin1Char('\n') && c != QLatin1Char('\t');
}

// A CR LF is one place, and a CR alone breaks a line like an LF. A control character shows as a
// blank.
QString ShownText(const LyricsBox &box)
{
    const std::string breaks =
        runtime::Replace(runtime::Replace(box.Text(), "\r\n", "\n"), "\r", "\n");
    QString text = platform::qt::ToQt(metadata::TextOf(box.kind, breaks));
    std::replace_if(text.begin(), text.end(), HasNoShape, QLatin1Char(' '));
    return text;
}

std::string StoredText(const QString &shown, metadata::TextKind kind)
{
    return runtime::Replace(metadata::FieldOf(kind, platform::qt::FromQt(shown)), "\n", "\r\n");
}

// The range in which two texts differ. It never begins or ends inside a character of two units.
struct Difference {
    int from = 0;              // in both
    int before = 0, after = 0; // its end in either
};

Difference DifferenceOf(const QString &before, const QString &after)
{
    const auto [from, to] =
        std::mismatch(before.cbegin(), before.cend(), after.cbegin(), after.cend());
    const auto same =
        std::mismatch(std::make_reverse_iterator(before.cend()), std::make_reverse_iterator(from),
                      std::make_reverse_iterator(after.cend()), std::make_reverse_iterator(to));
    Difference stretch{static_cast<int>(from - before.cbegin()),
                       static_cast<int>(same.first.base() - before.cbegin()),
                       static_cast<int>(same.second.base() - after.cbegin())};
    if (stretch.from > 0 && before[stretch.from - 1].isHighSurrogate())
        --stretch.from;
    if (stretch.before < before.size() && before[stretch.before].isLowSurrogate()) {
        ++stretch.before;
        ++stretch.after;
    }
    return stretch;
}

} // namespace

LyricsView::LyricsView(LyricsBox &box, QWidget *parent) : QPlainTextEdit(parent), m_box(box)
{
    setTabChangesFocus(true);
    ui::qt::KeepSelectionBright(this);
    ShowPlace();
    ShowText();
    ShowSelection();
    m_box.changed = [this] {
        ShowPlace();
        ShowText();
    };
    m_box.selectionChanged = [this] { ShowSelection(); };
    m_box.focusWanted = [this] { setFocus(); };
    connect(document(), &QTextDocument::contentsChange, this, &LyricsView::TakeEdit);
    // The edit is given to the box; what the box makes of it is shown when the edit has ended.
    connect(document(), &QTextDocument::contentsChanged, this, [this] {
        if (!m_applying)
            ShowText();
    });
    connect(this, &QPlainTextEdit::selectionChanged, this, &LyricsView::TakeSelection);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &LyricsView::TakeSelection);
}

LyricsView::~LyricsView()
{
    m_box.changed = nullptr;
    m_box.selectionChanged = nullptr;
    m_box.focusWanted = nullptr;
    disconnect(document(), nullptr, this,
               nullptr); // the document is destroyed after this, together with its text
}

void LyricsView::ShowText()
{
    if (m_taking)
        return;
    const Flag applying(m_applying, true);
    m_places = BreakPlaces(m_box.Text(), m_box.kind);
    const QString text = ShownText(m_box);
    if (text == m_shown)
        return;
    if (m_shown.isEmpty() || text.isEmpty()) {
        setPlainText(text);
    } else {
        // Only the range that differs is replaced, as an edit that can be undone.
        const Difference stretch = DifferenceOf(m_shown, text);
        QTextCursor cursor(document());
        cursor.setPosition(stretch.from);
        cursor.setPosition(stretch.before, QTextCursor::KeepAnchor);
        cursor.insertText(text.mid(stretch.from, stretch.after - stretch.from));
    }
    m_shown = text;
    ShowSelection();
}

void LyricsView::ShowPlace()
{
    setGeometry(ui::qt::PixelRect(m_box.Place()));
    setVisible(m_box.Visible());
    // Parsing disables the box for a moment; by then it is enabled again and nothing needs to be
    // shown.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (isEnabled() != m_box.Enabled())
                ui::qt::ShowState(m_box, this);
        },
        Qt::QueuedConnection);
}

void LyricsView::ShowSelection()
{
    if (m_taking)
        return;
    const Flag applying(m_applying, true);
    QTextCursor cursor(document());
    cursor.setPosition(m_places.Shown(m_box.SelStart()));
    cursor.setPosition(m_places.Shown(m_box.SelStart() + m_box.SelLength()),
                       QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    ScrollToSelection();
}

void LyricsView::ScrollToSelection()
{
    QTextCursor start = textCursor();
    start.setPosition(start.selectionStart());
    const int line = std::max(1, fontMetrics().lineSpacing());
    const int margin = std::min(kLinesAround * line, viewport()->height() / 4);
    const auto lines = [line](int pixels) { return (pixels + line - 1) / line; };
    QScrollBar *bar = verticalScrollBar();
    if (const int below = cursorRect().bottom() + margin - viewport()->height(); below > 0)
        bar->setValue(bar->value() + lines(below));
    if (const int above = margin - cursorRect(start).top(); above > 0)
        bar->setValue(bar->value() - lines(above));
}

void LyricsView::TakeEdit(int position, int removed, int added)
{
    if (m_applying)
        return;
    const int before = static_cast<int>(m_shown.size());
    const int after = document()->characterCount() - 1; // without the end of the last block
    removed = std::min(removed, before - position);
    added = std::min(added, after - position);
    if (before - removed + added != after) { // the document does not report which part has changed
        position = 0;
        removed = before;
        added = after;
    }
    QString text;
    for (int i = position; i < position + added; ++i) {
        const QChar c = document()->characterAt(i);
        const bool breaks = c == QChar::ParagraphSeparator || c == QChar::LineSeparator;
        text += breaks ? QLatin1Char('\n') : c;
    }
    const int from = m_places.Stored(position);
    const int to = m_places.Stored(position + removed);
    m_shown.replace(position, removed, text);
    const Flag taking(m_taking, true);
    m_box.Replace(from, to - from, StoredText(text, m_box.kind));
    m_places = BreakPlaces(m_box.Text(), m_box.kind);
}

void LyricsView::TakeSelection()
{
    if (m_applying || m_taking)
        return;
    if (m_places.ShownSize() != document()->characterCount() - 1)
        return; // an edit is in progress, and the box does not have it yet
    const QTextCursor cursor = textCursor();
    const int start = m_places.Stored(cursor.selectionStart());
    m_box.NoteSelection(start, m_places.Stored(cursor.selectionEnd()) - start);
}

void RegisterLyricsView()
{
    ui::qt::RegisterWidget("frmLyrics", "Lyrics", [](ui::Form &form, QWidget *parent) -> QWidget * {
        auto *view = new LyricsView(static_cast<LyricsForm &>(form).Lyrics, parent);
        view->setAccessibleName(
            platform::qt::ToQt(shell::GetLanguageText("Lyrics", "Lyrics", "Times")));
        return view;
    });
}

} // namespace lyrics
