// The main window's menus, toolbar and popup, built from the tables of browser/commands.h.
#include "browser/form/commandstate.h"
#include "browser/form/formpopup.h"
#include "browser/windows/frmMain.h"
#include "shell/language.h"
#include "ui/qt/bindings.h"
#include "ui/qt/icons.h"
#include "ui/qt/qttext.h"
#include "ui/qt/widgets/stripmenu.h"

#include <QActionGroup>
#include <QMenuBar>
#include <QPainter>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>
#include <iterator>

namespace browser
{

namespace
{

constexpr int kToolIconPixels = 22;
constexpr int kStripIconPixels = 16;
constexpr std::string_view kLanguageEntry = "submnuLng";
constexpr std::string_view kExtras = "mnuExtras";
constexpr std::string_view kCheckable[] = {"submnuWebStyle", "submnuUnicodeTags"};

QIcon MenuIcon(std::string_view name)
{
    for (const MenuImage &image : MenuImages())
        if (image.name == name)
            return ui::qt::Icon(image.image);
    return {};
}

QColor ColourOf(ui::Colour colour)
{
    return {static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
            static_cast<int>(colour >> 16 & 0xFF)};
}

} // namespace

void frmMainWindow::BuildMenus()
{
    ui::qt::Name(menuBar(), "MenuBar");
    for (const MenuLine &line : MenuLines())
        AddMenuLine(line);
    m_form.extrasBuilt = [this] {
        for (const MenuLine &line : ExtraMenuLines())
            AddMenuLine(line);
    };
}

void frmMainWindow::AddMenuLine(const MenuLine &line)
{
    ui::Command *command = m_form.FindMenu(line.name);
    if (command == nullptr || line.name.starts_with(kLanguageEntry))
        return;
    QMenu *parent = line.parent.empty() ? nullptr : m_menus[std::string(line.parent)];
    if (line.parent.empty() || line.submenu) {
        auto *menu = new QMenu(this);
        ui::qt::Name(menu, std::string(line.name).c_str());
        m_menus[std::string(line.name)] = menu;
        menu->menuAction()->setIcon(MenuIcon(line.name));
        ui::qt::BindAction(*command, menu->menuAction());
        if (parent != nullptr)
            parent->addMenu(menu);
        else
            menuBar()->insertMenu(line.name == kExtras ? m_menus["mnuHelp"]->menuAction() : nullptr,
                                  menu);
        if (line.parent.empty())
            connect(menu, &QMenu::aboutToShow, this, [this] { UpdateCommands(m_form); });
        if (line.name == "submnuSetLanguage")
            connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillLanguageMenu(menu); });
        return;
    }
    auto *action = new QAction(this);
    QWidget *holder = parent != nullptr ? static_cast<QWidget *>(parent) : menuBar();
    holder->addAction(action);
    if (line.caption == "-") {
        action->setSeparator(true);
        ui::qt::Bind(*command, action,
                     [command, action] { action->setVisible(command->Visible()); });
        return;
    }
    action->setIcon(MenuIcon(line.name));
    if (!line.shortcut.empty())
        action->setShortcut(QKeySequence(ui::qt::ToQt(line.shortcut)));
    action->setMenuRole(QAction::NoRole);
    ui::qt::BindAction(*command, action,
                       std::find(std::begin(kCheckable), std::end(kCheckable), line.name) !=
                           std::end(kCheckable));
    connect(action, &QAction::triggered, this, [this, command] {
        RunCommand(m_form, command->name);
        if (command->changed)
            command->changed(); // the check mark shows the command's state, not the click
    });
}

// The languages are known late in the start; one entry for each file.
void frmMainWindow::FillLanguageMenu(QMenu *menu)
{
    for (ui::Command &command : m_form.menu) {
        if (!command.name.starts_with(kLanguageEntry) ||
            menu->findChild<QAction *>(ui::qt::ToQt(command.name)) != nullptr)
            continue;
        auto *action = new QAction(menu);
        menu->addAction(action);
        ui::qt::BindAction(command, action);
        connect(action, &QAction::triggered, this,
                [this, &command] { RunCommand(m_form, command.name); });
    }
}

// The names for screen readers of the controls without a caption.
void frmMainWindow::NameForReaders()
{
    const auto name = [this](const char *control, const std::string &words) {
        if (auto *widget = findChild<QWidget *>(QLatin1String(control)); widget != nullptr)
            widget->setAccessibleName(ui::qt::ToQt(words));
    };
    setAccessibleName(windowTitle());
    name("TV", shell::GetLanguageText("Catalogue", "Tree", "Spoken"));
    name("LV", shell::GetLanguageText("Songs and folders", "List", "Spoken"));
    name("Separator", shell::GetLanguageText("Width of the catalogue", "Splitter", "Spoken"));
}

void frmMainWindow::BuildToolbar()
{
    m_toolbar->setMovable(false);
    m_toolbar->setIconSize({kToolIconPixels, kToolIconPixels});
    m_toolbar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (const ToolButton &line : ToolButtons()) {
        if (line.key.empty()) {
            m_toolbar->addSeparator();
            continue;
        }
        ui::Command *command = m_form.FindButton(line.key);
        if (command == nullptr)
            continue;
        QAction *action = m_toolbar->addAction(ui::qt::Icon(line.image), QString());
        QWidget *button = m_toolbar->widgetForAction(action);
        button->setObjectName(ui::qt::ToQt("TB_" + command->name));
        button->setFocusPolicy(Qt::TabFocus);
        ui::qt::Bind(*command, action, [command, action, button] {
            // A tool tip has no access key; changing the language removes the marks too.
            const QString tip = ui::qt::LabelText(command->Caption());
            action->setIconText(tip);
            action->setToolTip(ui::qt::TipText(tip));
            action->setEnabled(command->Enabled());
            action->setVisible(command->Visible());
            button->setAccessibleName(tip);
        });
        connect(action, &QAction::triggered, this,
                [this, command] { RunCommand(m_form, command->name); });
    }
}

void frmMainWindow::BuildPopup()
{
    const int width = ui::PixelsOfTwips(m_form.picSideBar.Width());
    m_popup = new ui::qt::StripMenu(
        width, [this](QSize size, qreal scale) { return DrawStrip(size, scale); }, this);
    ui::qt::Name(m_popup, "Pop");
}

// Fills the menu again, because the states of the entries may have changed, and measures it.
std::vector<int> frmMainWindow::PopupHeights()
{
    m_popup->clear();
    std::vector<int> heights;
    for (const PopupEntry &entry : m_form.cp) {
        if (entry.image.empty()) {
            m_popup->AddTitle(ui::qt::LabelText(std::string_view(entry.caption).substr(1)));
            continue;
        }
        QAction *action =
            m_popup->addAction(ui::qt::Icon(entry.image), ui::qt::MenuText(entry.caption));
        action->setObjectName(ui::qt::ToQt(entry.key));
        action->setEnabled(entry.enabled);
        connect(action, &QAction::triggered, this,
                [this, key = entry.key] { ClickPopup(m_form, key); });
    }
    for (QAction *action : m_popup->actions())
        heights.push_back(m_popup->actionGeometry(action).height());
    return heights;
}

void frmMainWindow::ShowPopup(int leftTwips, int topTwips)
{
    const QPoint place(ui::PixelsOfTwips(leftTwips), ui::PixelsOfTwips(topTwips));
    m_popup->popup(m_client->mapToGlobal(place));
}

QPixmap frmMainWindow::DrawStrip(QSize size, qreal scale)
{
    QPixmap picture(size * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    if (m_form.logo == nullptr)
        return picture;
    QPainter painter(&picture);
    ui::cLogo &logo = *m_form.logo;
    logo.widthTwips = ui::TwipsOfPixels(size.width());
    logo.heightTwips = ui::TwipsOfPixels(size.height());
    QFont captionFont = font();
    captionFont.setBold(true);
    const auto paint = [&](const ui::StripPlan &plan) {
        for (const ui::StripBand &band : plan.bands)
            painter.fillRect(0, band.top, size.width(), band.height, ColourOf(band.colour));
        if (plan.icon)
            painter.drawPixmap(
                plan.icon->x, plan.icon->y,
                ui::qt::Icon("Controls").pixmap(QSize(kStripIconPixels, kStripIconPixels), scale));
        painter.setFont(captionFont);
        painter.setPen(Qt::white);
        painter.translate(plan.text.x, plan.text.y);
        painter.rotate(-90);
        const QFontMetrics metrics(captionFont);
        const int middle = (size.width() - metrics.height()) / 2 + metrics.ascent();
        painter.drawText(QPoint(0, middle), ui::qt::ToQt(logo.Caption));
    };
    logo.DrawingObject = paint;
    logo.Draw();
    logo.DrawingObject = nullptr;
    return picture;
}

} // namespace browser
