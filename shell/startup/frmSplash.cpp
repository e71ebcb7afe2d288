#include "shell/startup/frmSplash.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "platform/windows.h"
#include "shell/globals.h"
#include "shell/openaddress.h"
#include "shell/version.h"
#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace shell
{

namespace
{

constexpr int kPictureHeight = 250; // pixels; the picture is as wide as the window
constexpr int kMargin = 14;         // pixels around what stands below it
constexpr int kTranslationWidth = 210;

// A label that opens an address when it is clicked or its Enter key is pressed.
class AddressLabel : public QPushButton
{
public:
    AddressLabel(const QString &text, QWidget *parent) : QPushButton(text, parent)
    {
        setFlat(true);
        setCursor(Qt::PointingHandCursor);
        TakeColour();
    }

protected:
    void changeEvent(QEvent *event) override
    {
        QPushButton::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            TakeColour();
    }

private:
    // Again after each change of the theme; its own change comes back here as well.
    void TakeColour()
    {
        QPalette colours = palette();
        const QColor link = QGuiApplication::palette().color(QPalette::Link);
        if (colours.color(QPalette::ButtonText) == link)
            return;
        colours.setColor(QPalette::ButtonText, link);
        setPalette(colours);
    }
};

ui::Rect ScreenPlace()
{
    const QRect place = QGuiApplication::primaryScreen()->availableGeometry();
    return {ui::TwipsOfPixels(place.left()), ui::TwipsOfPixels(place.top()),
            ui::TwipsOfPixels(place.width()), ui::TwipsOfPixels(place.height())};
}

} // namespace

frmSplash::frmSplash(std::function<void()> showMainForm, std::function<void()> showHistory,
                     std::function<void()> showLicences)
    : m_showMainForm(std::move(showMainForm)), m_showHistory(std::move(showHistory)),
      m_showLicences(std::move(showLicences)), m_lblProgress(new QLabel(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    ui::qt::Name(this, "frmSplash");
    setWindowTitle(ui::qt::ToQt(kApplicationTitle));
    setWindowIcon(QIcon(QStringLiteral(":/icons/app.svg")));
    CloseIt.event = [this] { close(); };
    ui::qt::BindTimer(CloseIt, this);
    Load();
}

frmSplash::~frmSplash() = default;

QLabel *frmSplash::AddLabel(const char *name, const QString &text)
{
    auto *label = new QLabel(this);
    ui::qt::Name(label, name);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setAccessibleDescription(text);
    return label;
}

// The picture and the version, which both roles show, and what each shows below them.
void frmSplash::Load()
{
    const QSize size(ui::PixelsOfTwips(kSplashWidth), kPictureHeight);
    auto *picture = new QLabel(this);
    ui::qt::Name(picture, "imgLogo");
    picture->setGeometry(QRect(QPoint(), size));
    picture->setPixmap(
        QIcon(QStringLiteral(":/pictures/splash.svg")).pixmap(size, devicePixelRatioF()));
    QLabel *version = AddLabel(
        "LabVers", ui::qt::ToQt(VersionCaption(kProgramVersion.major, kProgramVersion.minor,
                                               kProgramVersion.patch)));
    QPalette white = version->palette();
    white.setColor(QPalette::WindowText, Qt::white); // it stands on the picture's dark ground
    version->setPalette(white);
    version->setAlignment(Qt::AlignRight);
    version->setGeometry(ui::PixelsOfTwips(kSplashWidth) - 214, kPictureHeight - 30, 200, 20);
    BuildProgress();
    const SplashTexts texts = LoadSplashTexts();
    BuildAbout(texts);
    AddTranslation(texts);
}

void frmSplash::BuildProgress()
{
    ui::qt::Name(m_lblProgress, "lblProgress");
    m_lblProgress->setTextFormat(Qt::PlainText);
    const int height = ui::PixelsOfTwips(kSplashHeight) - kPictureHeight;
    m_lblProgress->setGeometry(kMargin, kPictureHeight,
                               ui::PixelsOfTwips(kSplashWidth) - 2 * kMargin, height);
    ui::Label &progress = TheGlobals().lblProgress;
    ui::qt::Bind(progress, m_lblProgress, [this, &progress] {
        m_lblProgress->setText(ui::qt::LabelText(progress.Caption()));
        m_lblProgress->setAccessibleDescription(m_lblProgress->text());
        m_lblProgress->repaint();
    });
}

void frmSplash::BuildAbout(const SplashTexts &texts)
{
    m_about = new QWidget(this);
    ui::qt::Name(m_about, "About");
    m_about->setGeometry(0, kPictureHeight, ui::PixelsOfTwips(kSplashWidth),
                         ui::PixelsOfTwips(kAboutHeight) - kPictureHeight);
    auto *lines = new QVBoxLayout(m_about);
    lines->setContentsMargins(kMargin, kMargin / 2, kMargin, kMargin);
    // Each line is as wide as it is: the translation's credits are beside them.
    const auto addLine = [lines](QWidget *name, QWidget *value) {
        auto *line = new QHBoxLayout;
        line->addWidget(name);
        line->addWidget(value);
        line->addStretch();
        lines->addLayout(line);
    };
    addLine(AddLabel("lblProgrammed", ui::qt::ToQt(texts.programmedBy)),
            AddLabel("Label2", ui::qt::ToQt(kAuthor)));
    auto *address = new AddressLabel(ui::qt::ToQt(kSupportAddress), m_about);
    ui::qt::Name(address, "lblEmail");
    connect(address, &QPushButton::clicked, this,
            [] { OpenAddress(SupportMailAddress(), "C:\\"); });
    addLine(AddLabel("lblMail", ui::qt::ToQt(texts.email)), address);
    QLabel *contact = AddLabel("lblICQ", ui::qt::ToQt(texts.icq));
    QLabel *number = AddLabel("Label5", ui::qt::ToQt(kContactNumber));
    addLine(contact, number);
    for (QLabel *label : {contact, number})
        label->setVisible(!kContactNumber.empty());
    lines->addStretch();
    QPushButton *licences = AddButton("cmdLicences", texts.licencesButton);
    licences->setEnabled(m_showLicences != nullptr);
    connect(licences, &QPushButton::clicked, this, [this] { m_showLicences(); });
    QPushButton *history = AddButton("cmdHistory", texts.historyButton);
    history->setEnabled(m_showHistory != nullptr);
    connect(history, &QPushButton::clicked, this, [this] { m_showHistory(); });
    m_cmdOk = AddButton("cmdOk", texts.okButton);
    connect(m_cmdOk, &QPushButton::clicked, this, &QWidget::close);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(licences);
    buttons->addWidget(history);
    buttons->addWidget(m_cmdOk);
    lines->addLayout(buttons);
}

QPushButton *frmSplash::AddButton(const char *name, const std::string &caption)
{
    auto *button = new QPushButton(ui::qt::MenuText(caption), m_about);
    ui::qt::Name(button, name);
    return button;
}

// The language file's credits, in both roles; without a file there is nobody to thank.
void frmSplash::AddTranslation(const SplashTexts &texts)
{
    if (texts.translator.empty() && texts.translatedBy.empty())
        return;
    auto *frame = new QGroupBox(ui::qt::MenuText(texts.title), this);
    ui::qt::Name(frame, "frmTranslation");
    const int left = ui::PixelsOfTwips(kSplashWidth) - kMargin - kTranslationWidth;
    frame->setGeometry(left, kPictureHeight + 4, kTranslationWidth,
                       ui::PixelsOfTwips(kSplashHeight) - kPictureHeight - 8);
    m_lblProgress->resize(left - 2 * kMargin, m_lblProgress->height());
    auto *lines = new QVBoxLayout(frame);
    lines->setContentsMargins(8, 2, 8, 4);
    lines->setSpacing(0);
    lines->addWidget(AddLabel("lblTranslatedBy", ui::qt::ToQt(texts.translatedBy)));
    lines->addWidget(AddLabel("lblTranslator", ui::qt::ToQt(texts.translator)));
}

void frmSplash::ShowSplash(bool about)
{
    if (platform::TheMachine().windows != nullptr)
        platform::TheMachine().windows->CheckNonModal();
    m_look = LookOfSplash(about);
    setWindowFlags(about ? Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint
                         : Qt::SplashScreen | Qt::FramelessWindowHint);
    const ui::Rect place = Centred(m_look.width, m_look.height, ScreenPlace());
    setFixedSize(ui::PixelsOfTwips(place.width), ui::PixelsOfTwips(place.height));
    move(ui::PixelsOfTwips(place.left), ui::PixelsOfTwips(place.top));
    m_lblProgress->setVisible(m_look.progressVisible);
    m_about->setVisible(about);
    show();
    if (about)
        m_cmdOk->setFocus();
    else
        platform::TheMachine().desktop->DoEvents();
}

void frmSplash::closeEvent(QCloseEvent *event)
{
    if (!m_look.keyPreview && !CloseIt.Enabled()) {
        event->ignore(); // the start is still under way
        return;
    }
    event->accept();
    CloseIt.SetEnabled(false);
    hide();
    UnloadSplash(m_look.height, std::exchange(m_showMainForm, nullptr));
}

void frmSplash::keyPressEvent(QKeyEvent *event)
{
    if (m_look.keyPreview && event->key() == Qt::Key_Escape)
        close();
    else if (auto *button = qobject_cast<QPushButton *>(focusWidget());
             button != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QWidget::keyPressEvent(event);
}

} // namespace shell
