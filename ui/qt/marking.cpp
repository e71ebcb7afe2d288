#include "ui/qt/marking.h"

#include "platform/qt/theme.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>

namespace ui::qt
{

namespace
{

// The contrast to the background of a box is greater than 4.5 to 1, which small text needs.
constexpr QRgb kMarkOnLight = 0xffb3261e, kMarkOnDark = 0xffff8a80;

// Sets colours of its parent, a box, and sets them again when the box gets another palette.
class BoxColours : public QObject
{
public:
    explicit BoxColours(QWidget *box) : QObject(box), m_box(*box) { box->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange)
            Show();
        return QObject::eventFilter(watched, event);
    }

protected:
    // Sets the colours that differ from the wanted ones: setting them is a change, too.
    virtual void Show() = 0;

    QWidget &Box() const { return m_box; }

private:
    QWidget &m_box; // the parent of this object
};

class TextColour : public BoxColours
{
public:
    using BoxColours::BoxColours;

    void Set(bool marked)
    {
        m_marked = marked;
        Show();
    }

protected:
    void Show() override
    {
        const QColor wanted =
            m_marked ? QColor::fromRgba(platform::qt::IsDark() ? kMarkOnDark : kMarkOnLight)
                     : QApplication::palette().color(QPalette::Text);
        QPalette palette = Box().palette();
        if (palette.color(QPalette::Active, QPalette::Text) == wanted)
            return;
        palette.setColor(QPalette::Active, QPalette::Text, wanted);
        palette.setColor(QPalette::Inactive, QPalette::Text, wanted);
        Box().setPalette(palette);
    }

private:
    bool m_marked = false;
};

// The same colours of the selection with and without the focus.
class BrightSelection : public BoxColours
{
public:
    using BoxColours::BoxColours;

    void Show() override
    {
        QPalette palette = Box().palette();
        bool same = true;
        for (const auto role : {QPalette::Highlight, QPalette::HighlightedText}) {
            const QColor wanted = palette.color(QPalette::Active, role);
            same = same && palette.color(QPalette::Inactive, role) == wanted;
            palette.setColor(QPalette::Inactive, role, wanted);
        }
        if (!same)
            Box().setPalette(palette);
    }
};

TextColour *ColourOf(const QWidget *box)
{
    for (QObject *child : box->children())
        if (auto *colour = dynamic_cast<TextColour *>(child))
            return colour;
    return nullptr;
}

} // namespace

void ShowMark(QWidget *box, bool marked)
{
    QWidget *target = box;
    if (const auto *combo = qobject_cast<QComboBox *>(box); combo != nullptr && combo->isEditable())
        target = combo->lineEdit();
    TextColour *colour = ColourOf(target);
    if (colour == nullptr && !marked)
        return;
    if (colour == nullptr)
        colour = new TextColour(target); // owned by the box
    colour->Set(marked);
}

void KeepSelectionBright(QWidget *box)
{
    auto *selection = new BrightSelection(box); // owned by the box
    selection->Show();
}

} // namespace ui::qt
