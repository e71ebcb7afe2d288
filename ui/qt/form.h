// ui/qt/form.h - shows a ui::Form in a window: makes a widget for each of its controls, connects
// the two, and does what all windows need: object names, captions from the language file, names for
// screen readers, label buddies, tool tips, Tab order, Enter and Escape, the icon, the stored
// place.
#pragma once

#include "ui/controls/form.h"
#include "ui/qt/widgetmakers.h"

#include <QObject>
#include <QWidget>
#include <memory>
#include <vector>

namespace ui::qt
{

class FormWindow;

// The host of the program's forms. While it exists it is ui::TheFormHost().
class FormWindows : public ui::FormHost
{
public:
    FormWindows();
    ~FormWindows() override; // closes all windows
    FormWindows(const FormWindows &) = delete;
    FormWindows &operator=(const FormWindows &) = delete;

    void Show(ui::Form &form) override;
    void ShowModal(ui::Form &form) override;
    void Hide(ui::Form &form) override;
    void Close(ui::Form &form) override;
    void Retire(std::unique_ptr<ui::Form> form) override;
    std::vector<ui::Form *> Forms() override;

    // The window of a loaded form; null for any other.
    QWidget *WindowOf(const ui::Form &form) const;

private:
    FormWindow &Load(ui::Form &form);
    FormWindow *Find(const ui::Form &form) const;

    void Delete(const ui::Form &form); // the window of a closed form
    void DeleteClosed(); // deletes the windows whose forms are closed, then the retired forms

    QObject m_later;                     // receives the queued calls of DeleteClosed
    std::vector<FormWindow *> m_windows; // in the order of loading; deleted by DeleteClosed
    std::vector<std::unique_ptr<ui::Form>> m_retired; // destroyed after their windows
};

} // namespace ui::qt
