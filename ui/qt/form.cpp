#include "ui/qt/form.h"

#include "platform/machine.h"
#include "platform/qt/modalwait.h"
#include "platform/windows.h"
#include "shell/language.h"
#include "ui/qt/formwindow.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <string>

namespace ui::qt
{

namespace
{

std::string TextOf(const ui::Caption &row)
{
    return shell::GetLanguageText(row.text, row.key, row.section);
}

} // namespace

FormWindows::FormWindows()
{
    ui::TheFormHost() = this;
}

FormWindows::~FormWindows()
{
    ui::CloseAll();
    DeleteClosed();
    if (ui::TheFormHost() == this)
        ui::TheFormHost() = nullptr;
}

FormWindow *FormWindows::Find(const ui::Form &form) const
{
    const auto found = std::find_if(m_windows.begin(), m_windows.end(), [&](FormWindow *window) {
        return &window->TheForm() == &form;
    });
    return found == m_windows.end() ? nullptr : *found;
}

QWidget *FormWindows::WindowOf(const ui::Form &form) const
{
    return form.Loaded() ? Find(form) : nullptr;
}

std::vector<ui::Form *> FormWindows::Forms()
{
    std::vector<ui::Form *> forms;
    for (const FormWindow *window : m_windows)
        if (window->TheForm().Loaded())
            forms.push_back(&window->TheForm());
    return forms;
}

// The window is built after its form is loaded, with the texts that the form then has. A form that
// is shown again before its closed window is deleted gets that window again.
FormWindow &FormWindows::Load(ui::Form &form)
{
    if (!form.Loaded())
        ui::LoadForm(form, TextOf);
    FormWindow *window = Find(form);
    if (window == nullptr) {
        window = new FormWindow(form, nullptr);
        m_windows.push_back(window);
    }
    return *window;
}

void FormWindows::Show(ui::Form &form)
{
    platform::Windows *windows = platform::TheMachine().windows;
    if (windows != nullptr && !form.overModal)
        windows->CheckNonModal();
    FormWindow &window = Load(form);
    if (form.overModal)
        window.UseOver(QApplication::activeModalWidget());
    window.Present(false);
}

void FormWindows::ShowModal(ui::Form &form)
{
    const platform::qt::ModalWait wait;
    QWidget *parent = platform::qt::OwnerOfBox();
    FormWindow &window = Load(form);
    if (parent != nullptr && window.parentWidget() == nullptr)
        window.setParent(parent, window.windowFlags());
    QEventLoop loop;
    const auto over = QObject::connect(&window, &QDialog::finished, &loop, &QEventLoop::quit);
    window.Present(true);
    if (form.Visible())
        loop.exec();
    QObject::disconnect(over);
    ui::Close(form);
    Delete(form); // it may be destroyed now
}

void FormWindows::Hide(ui::Form &form)
{
    form.SetVisible(false);
    if (FormWindow *window = Find(form); window != nullptr)
        window->Leave();
}

// A handler of the window itself may close it, so the window is deleted when the event is over.
void FormWindows::Close(ui::Form &form)
{
    Hide(form);
    ui::UnloadForm(form);
    QMetaObject::invokeMethod(
        &m_later, [this] { DeleteClosed(); }, Qt::QueuedConnection);
}

void FormWindows::Retire(std::unique_ptr<ui::Form> form)
{
    m_retired.push_back(std::move(form));
    QMetaObject::invokeMethod(
        &m_later, [this] { DeleteClosed(); }, Qt::QueuedConnection);
}

void FormWindows::Delete(const ui::Form &form)
{
    FormWindow *window = Find(form);
    std::erase(m_windows, window);
    delete window;
}

// A window that let events run in one of its own is deleted later.
void FormWindows::DeleteClosed()
{
    constexpr int kAgainMs = 20;
    std::vector<FormWindow *> closed;
    for (FormWindow *window : m_windows) {
        if (window->TheForm().Loaded())
            continue;
        if (window->IsInEvent())
            QTimer::singleShot(kAgainMs, &m_later, [this] { DeleteClosed(); });
        else
            closed.push_back(window);
    }
    for (FormWindow *window : closed) {
        std::erase(m_windows, window);
        delete window;
    }
    std::vector<std::unique_ptr<ui::Form>> ended;
    for (auto &form : m_retired)
        if (!form->Loaded() && Find(*form) == nullptr)
            ended.push_back(std::move(form));
    std::erase(m_retired, nullptr);
}

} // namespace ui::qt
