// ui/qt/formwindow.h - the window of one ui::Form; ui/qt/form makes and deletes it.
#pragma once

#include "ui/controls/form.h"
#include "ui/qt/inputbindings.h"

#include <QDialog>
#include <QPointer>
#include <functional>
#include <map>
#include <string>
#include <vector>

class QBoxLayout;
class QLayout;

namespace ui::qt
{

class FormWindow : public QDialog
{
public:
    // The form must be loaded, and outlives its window.
    FormWindow(ui::Form &form, QWidget *parent);
    ~FormWindow() override;

    ui::Form &TheForm() const { return m_form; }

    // Whether the window is handling an event; it must not be deleted then.
    bool IsInEvent() const { return m_eventDepth > 0; }

    // Shows the window, the first time at its stored place; brings it to the front if it is shown
    // already.
    void Present(bool modal);

    // Allows using this window while the modal window `modal` is open (null: none).
    void UseOver(QWidget *modal);

    // Hides the window; a ShowModal that waits for it returns.
    void Leave();

    void reject() override; // Escape

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The events of a box for typing; read again each time, because the program may change them.
    struct Typing {
        std::function<std::function<bool(char32_t)>()> keyPressed;
        std::function<std::function<void()>()> lostFocus;
    };

    void Build();
    bool IsPlaced(const ui::Member &member) const;
    QWidget *Make(const ui::Member &member, QWidget *parent, bool isBuddy);
    QWidget *MakeOwn(const ui::Member &member, QWidget *parent, bool isBuddy);
    void LetMeasure(const ui::Member &member, QWidget *widget);
    void NameBySpokenName(const ui::Member &member, QWidget *widget);
    void NameByLabel(const ui::Label &label, QWidget *widget);
    void ListenTo(const ui::Member &member, QWidget *widget);
    void OrderTabs();
    void Arrange();
    void AddTo(QBoxLayout *box, const ui::Layout &part, bool filled);
    QWidget *Arranged(const ui::Layout &part);
    QLayout *MakeLayout(const ui::Layout &layout);
    QWidget *WidgetOf(const ui::Area *control, QWidget *otherwise = nullptr) const;
    void ShowForm();
    bool PressAccepting();
    void CopyTexts() const;
    void CountStepsFromLeastSize();
    void BelongToMainWindow();
    void LeaveOver();
    QWidget *WindowInUse() const;
    void PlaceBesideWindowInUse();
    void Centre();
    void RestorePlace();
    void StorePlace() const;

    ui::Form &m_form;
    std::map<const void *, QWidget *>
        m_widgets;                    // key: address of the control; owned by this window
    std::vector<QWidget *> m_inOrder; // the order of the Tab key
    QPointer<QWidget> m_over;         // the modal window beside which this one is used
    std::map<const QObject *, Typing> m_typing;
    bool m_placed = false;    // the stored place has been used
    bool m_layoutDue = false; // onResize is to be called after the current event
    int m_eventDepth = 0;     // the calls of event() that have not returned
};

} // namespace ui::qt
