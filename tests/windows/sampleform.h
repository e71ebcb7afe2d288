// tests/windows/sampleform.h - a form with a control of each kind, in its window.
#pragma once

#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "runtime/error.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"
#include "tests/windows/bench.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>
#include <QWheelEvent>

namespace tests
{

inline constexpr ui::Caption kSampleCaptions[] = {
    {"", "Sample", "Title", "A sample"},
    {"lblName", "Sample", "Name", "&Name:"},
    {"lblWords", "Sample", "Words", "&Words:"},
    {"frmKind", "Sample", "Kind", "Kind"},
    {"chkKeep", "Sample", "Keep", "&Keep it"},
    {"optOne", "Sample", "One", "&One"},
    {"optTwo", "Sample", "Two", "&Two"},
    {"lblGenre", "Sample", "Genre", "&Genre"},
    {"lblPosition", "Sample", "Position", "Position"},
    {"cmdPlay", "Sample", "Play", "Play the song", ui::Caption::Of::ToolTip},
    {"cmdOk", "Sample", "OkButton", "&Apply"},
    {"cmdCancel", "Sample", "CancelButton", "&Cancel"},
};

struct SampleForm : ui::Form {
    SampleForm() : Form("frmSample", kSampleCaptions)
    {
        Add("lblName", lblName);
        Add("txtName", txtName, {.label = &lblName});
        Add("lblWords", lblWords);
        txtWords.multiLine = true;
        Add("txtWords", txtWords, {.label = &lblWords});
        Add("frmKind", frmKind);
        Add("chkKeep", chkKeep, {.in = &frmKind});
        Add("optOne", optOne, {.in = &frmKind});
        Add("optTwo", optTwo, {.in = &frmKind});
        Add("lblGenre", lblGenre);
        cmbGenre.canType = true;
        Add("cmbGenre", cmbGenre, {.label = &lblGenre});
        Add("lblPosition", lblPosition);
        Add("sldPosition", sldPosition, {.label = &lblPosition});
        cmdPlay.SetImage("Play");
        Add("cmdPlay", cmdPlay);
        Add("cmdOk", cmdOk);
        Add("cmdCancel", cmdCancel);
        Add("tmr", tmr);
        acceptButton = &cmdOk;
        cancelButton = &cmdCancel;
        layout = ui::Column({
            ui::Grid(2,
                     {lblName, ui::Filled(txtName), lblGenre, cmbGenre, lblPosition, sldPosition}),
            lblWords,
            ui::Filled(txtWords),
            ui::Inside(frmKind, ui::Row({chkKeep, optOne, optTwo})),
            ui::Row({cmdPlay, ui::Room(), cmdOk, cmdCancel}),
        });
        cmdOk.onClick = [this] {
            done += "ok ";
            ui::Close(*this);
        };
        cmdCancel.onClick = [this] {
            done += "cancel ";
            ui::Close(*this);
        };
        onUnload = [this] { done += "unload "; };
    }

    ui::Label lblName, lblWords, lblGenre, lblPosition;
    ui::TextBox txtName, txtWords;
    ui::Frame frmKind;
    ui::CheckBox chkKeep;
    ui::Option optOne, optTwo;
    ui::ComboBox cmbGenre;
    ui::Slider sldPosition;
    ui::Button cmdPlay, cmdOk, cmdCancel;
    ui::Timer tmr{10};
    std::string done;
};

class FormScaled : public testing::Test
{
protected:
    FormScaled() { platform::TheMachine().windows = &windows; }
    ~FormScaled() override
    {
        ui::CloseAll();
        Settle(); // closed windows are deleted by the next event
        platform::TheMachine().windows = nullptr;
        platform::TheMachine().beginWait = nullptr;
    }

    QWidget &Shown()
    {
        ui::Show(form);
        QWidget *window = host.WindowOf(form);
        ShowAndActivate(*window);
        return *window;
    }

    template <class Control>
    Control &Of(const char *name)
    {
        return *Find<Control>(*host.WindowOf(form), name);
    }

    ScriptedDesktop desktop;
    MemorySettings settings;
    platform::qt::QtWindows windows;
    SampleForm form;
    ui::qt::FormWindows host;
};

} // namespace tests
