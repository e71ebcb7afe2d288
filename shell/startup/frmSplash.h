// shell/startup/frmSplash.h - one window in two roles: the splash with its progress line while the
// program starts, and the about box. Its height tells which role it played when it unloads.
#pragma once

#include "shell/startup/splash.h"
#include "ui/controls/timer.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace shell
{

class frmSplash : public QWidget
{
public:
    // The window deletes itself when it closes. `showMainForm` runs then, in the splash role only.
    // `showHistory`, `showLicences`: what the about box's buttons of these names do.
    explicit frmSplash(std::function<void()> showMainForm, std::function<void()> showHistory = {},
                       std::function<void()> showLicences = {});
    ~frmSplash() override;

    // Takes the size and the look of the role, stands in the middle of the screen and shows,
    // without modality. Errors: kNonModalOverModal (401) while a modal window is up.
    void ShowSplash(bool about);

    ui::Timer CloseIt{kCloseItMs}; // ends the splash by itself once it is enabled

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Load();
    QLabel *AddLabel(const char *name, const QString &text);
    void BuildProgress();
    void BuildAbout(const SplashTexts &texts);
    void AddTranslation(const SplashTexts &texts);

    QPushButton *AddButton(const char *name, const std::string &caption);

    std::function<void()> m_showMainForm, m_showHistory, m_showLicences;
    SplashLook m_look;
    QWidget *m_about = nullptr;     // what only the about box shows; owned as all that follows
    QLabel *m_lblProgress;          // the progress line at start
    QPushButton *m_cmdOk = nullptr; // ends the about box
};

} // namespace shell
