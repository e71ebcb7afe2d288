// tests/tagedit/editorfixture.h - the tag editor on a song whose bytes the test writes.
#pragma once

#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "shell/language.h"
#include "tagedit/tageditor.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/songdesk.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tests
{

class EditorTest : public testing::Test
{
protected:
    ~EditorTest() override { metadata::TheTagWriterHooks() = {}; }

    // Opens the editor on a song of these bytes.
    void Open(std::string_view bytes)
    {
        WriteFile(m_path, bytes);
        m_editor.File = m_path;
        ui::LoadForm(m_editor, [](const ui::Caption &row) {
            return shell::GetLanguageText(row.text, row.key, row.section);
        });
    }

    tagedit::Column &V1() { return m_editor.At(tagedit::kID3v1); }
    tagedit::Column &V2() { return m_editor.At(tagedit::kID3v2); }

    // "title|artist|album|year|comment|genre|track" of a column.
    static std::string Texts(tagedit::Column &column)
    {
        std::string texts;
        for (const tagedit::TagBox *box : column.TextBoxes())
            texts += box->Text() + "|";
        return texts + column.cmbGenre.Text() + "|" + column.txtTrack.Text();
    }

    static std::string Sound(std::size_t size = 3000)
    {
        std::string audio = Header128();
        for (std::size_t i = audio.size(); i < size; ++i)
            audio += static_cast<char>('A' + i % 50);
        return audio;
    }

    SongDesk m_desk;
    std::string m_path = m_desk.music / "song.mp3";
    tagedit::TagEditor m_editor;
};

} // namespace tests
