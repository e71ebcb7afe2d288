// tests/support/fakeforms.h - shows forms without windows: showing a form modally runs the test's
// script, which uses its controls and closes it.
#pragma once

#include "runtime/error.h"
#include "ui/controls/form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tests
{

class FakeForms : public ui::FormHost
{
public:
    FakeForms() : m_before(ui::TheFormHost()) { ui::TheFormHost() = this; }
    ~FakeForms() override
    {
        ui::CloseAll();
        m_retired.clear();
        ui::TheFormHost() = m_before;
        EXPECT_TRUE(scripts.empty()) << "a modal window that was expected did not come";
    }
    FakeForms(const FakeForms &) = delete;
    FakeForms &operator=(const FakeForms &) = delete;

    // What the user does in the next modal windows, one script for each. A modal window without a
    // script fails the test; one that its script leaves open is closed.
    std::vector<std::function<void(ui::Form &)>> scripts;
    bool modalUp = false; // showing without modality fails with error 401, as in the program

    void Show(ui::Form &form) override
    {
        if (modalUp)
            throw runtime::RuntimeError(runtime::kNonModalOverModal);
        Load(form);
        form.SetVisible(true);
    }

    void ShowModal(ui::Form &form) override
    {
        Load(form);
        form.SetVisible(true);
        if (scripts.empty()) {
            ADD_FAILURE() << "nobody answers the modal window " << form.name;
        } else {
            const auto script = scripts.front();
            scripts.erase(scripts.begin());
            const bool before = std::exchange(modalUp, true);
            script(form);
            modalUp = before;
        }
        ui::Close(form);
    }

    void Hide(ui::Form &form) override { form.SetVisible(false); }

    void Close(ui::Form &form) override
    {
        std::erase(m_forms, &form);
        ui::UnloadForm(form);
    }

    void Retire(std::unique_ptr<ui::Form> form) override { m_retired.push_back(std::move(form)); }

    std::vector<ui::Form *> Forms() override { return m_forms; }
    void Forget(ui::Form &form) override { std::erase(m_forms, &form); }

private:
    void Load(ui::Form &form)
    {
        if (form.Loaded())
            return;
        m_forms.push_back(&form);
        ui::LoadForm(form, [](const ui::Caption &row) { return std::string(row.text); });
    }

    FormHost *m_before;
    std::vector<ui::Form *> m_forms;
    std::vector<std::unique_ptr<ui::Form>> m_retired;
};

} // namespace tests
