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

// Sets the colour of the text of its parent, a box.
class TextColour : public QObject
{
public:
    explicit TextColour(QWidget *box) : QObject(box), m_box(*box) { box->installEventFilter(this); }

    void Set(bool marked)
    {
        m_marked = marked;
        Show();
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange)
            Show();
        return QObject::eventFilter(watched, event);
    }

private:
    void Show()
    {
        const QColor wanted =
            m_marked ? QColor::fromRgba(platform::qt::IsDark() ? kMarkOnDark : kMarkOnLight)
                     : QApplication::palette().color(QPalette::Text);
        QPalette palette = m_box.palette();
        if (palette.color(QPalette::Active, QPalette::Text) == wanted)
            return;
        palette.setColor(QPalette::Active, QPalette::Text, wanted);
        palette.setColor(QPalette::Inactive, QPalette::Text, wanted);
        m_box.setPalette(palette);
    }

    QWidget &m_box; // the parent of this object
    bool m_marked = false;
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

} // namespace ui::qt
