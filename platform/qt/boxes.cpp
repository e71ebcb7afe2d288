#include "platform/qt/boxes.h"

#include "platform/qt/text.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QClipboard>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace platform::qt
{

namespace
{

constexpr int kTextColumns = 72; // average characters in a line before the text wraps
constexpr int kIconPixels = 32;

QString Words(std::string_view text, std::string_view key)
{
    return ToQt(TheBoxWords() ? TheBoxWords()(text, key) : std::string(text));
}

// A label for plain text that wraps after a readable number of characters. A short text stays as
// narrow as it is.
QLabel *MakeLabel(const QString &text, const char *name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setFocusPolicy(Qt::NoFocus);
    const int widest = label->fontMetrics().averageCharWidth() * kTextColumns;
    const int natural = label->fontMetrics().size(0, text).width();
    label->setWordWrap(true);
    label->setFixedWidth(std::min(natural, widest) + 2);
    label->setFixedHeight(label->heightForWidth(label->width()));
    return label;
}

QDialogButtonBox *MakeButtonBox(QDialog *dialog)
{
    auto *box = new QDialogButtonBox(dialog);
    box->setAccessibleName(Words("Answers", "Answers"));
    QObject::connect(box, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(box, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return box;
}

QPushButton *AddButton(QDialogButtonBox *box, const char *name, const QString &caption,
                       QDialogButtonBox::ButtonRole role)
{
    QPushButton *button = box->addButton(caption, role);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(QString(caption).remove(QLatin1Char('&')));
    return button;
}

void MakeDefault(QPushButton *button)
{
    button->setDefault(true);
    button->setFocus();
}

// A rounded triangle in amber with an exclamation mark, sharp at every scale.
QPixmap DrawWarning(qreal scale)
{
    QPixmap picture(QSize(kIconPixels, kIconPixels) * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor amber(0xf2, 0xa3, 0x1b);
    const QColor ink(0x3a, 0x26, 0x00);
    painter.setPen(QPen(amber, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(amber);
    painter.drawPolygon(QPolygonF({{16, 5}, {29, 27}, {3, 27}}));
    painter.setPen(QPen(ink, 3, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(16, 12), QPointF(16, 19));
    painter.drawPoint(QPointF(16, 24.5));
    return picture;
}

QSize RoomForText(const QWidget &window)
{
    const QScreen *screen = window.screen();
    return screen ? screen->availableSize() * 2 / 3 : QSize(600, 400);
}

} // namespace

BoxWords &TheBoxWords()
{
    static BoxWords words;
    return words;
}

MessageDialog::MessageDialog(const QString &text, const QString &title, Buttons buttons,
                             BoxIcon icon, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    setObjectName(QStringLiteral("MessageBox"));
    lblText = MakeLabel(text, "lblText", this);
    lblText->setAccessibleName(text);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(16);
    layout->addWidget(MakeText(icon));
    layout->addWidget(MakeButtons(buttons));
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget *MessageDialog::MakeText(BoxIcon icon)
{
    auto *scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setAccessibleName(Words("Message", "Message"));
    scroll->setWidget(lblText);
    scroll->viewport()->setAutoFillBackground(false);
    lblText->setAutoFillBackground(false);

    const QSize room = RoomForText(*this);
    const QSize text = lblText->size();
    const bool higher = text.height() > room.height();
    scroll->setFixedSize(text.width() +
                             (higher ? scroll->verticalScrollBar()->sizeHint().width() : 0),
                         std::min(text.height(), room.height()));
    if (higher)
        scroll->setFocusPolicy(Qt::StrongFocus); // the arrow keys scroll

    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(6, 6, 6, 0);
    layout->setSpacing(14);
    if (icon == BoxIcon::Exclamation) {
        auto *picture = new QLabel(row);
        picture->setObjectName(QStringLiteral("picIcon"));
        picture->setAccessibleName(Words("Warning", "Warning"));
        picture->setPixmap(DrawWarning(devicePixelRatioF()));
        layout->addWidget(picture, 0, Qt::AlignTop);
    }
    layout->addWidget(scroll, 0, Qt::AlignVCenter);
    layout->addStretch();
    return row;
}

QWidget *MessageDialog::MakeButtons(Buttons buttons)
{
    using Role = QDialogButtonBox;
    QDialogButtonBox *box = m_buttons = MakeButtonBox(this);
    if (buttons == Buttons::YesNo) {
        AddAnswer(box, "cmdYes", Words("&Yes", "Yes"), Role::YesRole, Answer::Yes);
        MakeDefault(AddAnswer(box, "cmdNo", Words("&No", "No"), Role::NoRole, Answer::No));
    } else if (buttons == Buttons::SaveDiscardCancel) {
        MakeDefault(
            AddAnswer(box, "cmdSave", Words("&Save", "Save"), Role::AcceptRole, Answer::Save));
        QPushButton *discard = AddAnswer(box, "cmdDiscard", Words("&Discard", "Discard"),
                                         Role::DestructiveRole, Answer::Discard);
        connect(discard, &QPushButton::clicked, this, &QDialog::accept);
        AddAnswer(box, "cmdCancel", Words("&Cancel", "Cancel"), Role::RejectRole, Answer::Cancel);
    } else {
        MakeDefault(AddAnswer(box, "cmdOk", Words("&Ok", "Ok"), Role::AcceptRole, Answer::Ok));
    }
    return box;
}

void MessageDialog::SetDetails(const QString &details)
{
    lblDetails = MakeLabel(details, "lblDetails", this);
    lblDetails->setAccessibleName(details);
    lblDetails->hide();
    auto *layout = static_cast<QVBoxLayout *>(this->layout());
    layout->insertWidget(1, lblDetails);
    QPushButton *button = AddButton(m_buttons, "cmdDetails", Words("D&etails", "Details"),
                                    QDialogButtonBox::HelpRole);
    button->setCheckable(true);
    button->setAutoDefault(false);
    connect(button, &QPushButton::toggled, lblDetails, &QLabel::setVisible);
}

// The answer of the last one made counts until a button is pressed: that is the safe one.
QPushButton *MessageDialog::AddAnswer(QDialogButtonBox *box, const char *name,
                                      const QString &caption, QDialogButtonBox::ButtonRole role,
                                      Answer answer)
{
    QPushButton *button = AddButton(box, name, caption, role);
    m_answer = answer;
    connect(button, &QPushButton::clicked, this, [this, answer] { m_answer = answer; });
    return button;
}

void MessageDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::ShiftModifier)
        for (QAbstractButton *button : m_buttons->buttons()) {
            const QKeySequence accessKey = QKeySequence::mnemonic(button->text());
            if (!accessKey.isEmpty() && accessKey[0].key() == event->key()) {
                button->click();
                return;
            }
        }
    if (event->matches(QKeySequence::Copy))
        QGuiApplication::clipboard()->setText(
            lblDetails == nullptr ? lblText->text()
                                  : lblText->text() + QLatin1Char('\n') + lblDetails->text());
    else
        QDialog::keyPressEvent(event);
}

void MessageDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

InputDialog::InputDialog(const QString &prompt, const QString &title, const QString &initialText,
                         QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    setObjectName(QStringLiteral("InputBox"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MakeLabel(prompt, "lblPrompt", this));

    txtInput = new QLineEdit(initialText, this);
    txtInput->setObjectName(QStringLiteral("txtInput"));
    txtInput->setAccessibleName(prompt);
    txtInput->setMinimumWidth(txtInput->fontMetrics().averageCharWidth() * 48);
    txtInput->selectAll();
    layout->addWidget(txtInput);

    QDialogButtonBox *box = MakeButtonBox(this);
    AddButton(box, "cmdOk", Words("&Ok", "Ok"), QDialogButtonBox::AcceptRole)->setDefault(true);
    AddButton(box, "cmdCancel", Words("&Cancel", "Cancel"), QDialogButtonBox::RejectRole);
    layout->addWidget(box);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    txtInput->setFocus();
}

QString InputDialog::Text() const
{
    return txtInput->text();
}

void InputDialog::closeEvent(QCloseEvent *event)
{
    m_closedByFrame = event->spontaneous();
    QDialog::closeEvent(event);
}

} // namespace platform::qt
