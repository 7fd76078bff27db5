// How the grid looks in each state: nothing of a text is cut off in height. With ROLLOUT_PICTURES set to a folder, a
// picture of each state is saved there; a prefix with another LogPixels shows larger fonts.
#include "tests/controls/grid_fixture.h"
#include "window/gdi.h"

namespace {

class GridLook : public GridTest
{
protected:
    void SetUp() override
    {
        GridTest::SetUp();
        MakeGrid(5, 2);
        grid.SetCellText(0, 0, L"Type a name here");
        grid.SetCellText(0, 1, L"/nologo /p \"Group Query\"");
        grid.SetCellText(1, 1, L"/t template.dwt /p Company /set sheets.dst /nossm /nohardware");
    }
    static int HeightOf(HFONT font)
    {
        const CWindowDC dc(nullptr);
        const CSelectObject selected(dc.get(), font);
        TEXTMETRICW metrics = {};
        GetTextMetricsW(dc.get(), &metrics);
        return metrics.tmHeight;
    }
};

} // namespace

TEST_F(GridLook, TheRowsHaveRoomForTheirLetters)
{
    SavePicture(L"fresh");
    MakeCurrent(1, 1);
    SavePicture(L"current");
    SetFocus(after);
    SavePicture(L"unfocused");
    const RECT cell = CellPlace(0, 0);
    EXPECT_GE(cell.bottom - cell.top, HeightOf(grid.m_gridFont.get()));
}

TEST_F(GridLook, TheEditorHasRoomForItsLetters)
{
    Edit(0, 0);
    SavePicture(L"edit");
    EXPECT_GE(grid.m_edit.GetClientRect().bottom, HeightOf(grid.m_editFont.get()));
    Key(VK_TAB);
    Type(L"/x é");
    SavePicture(L"typed");
    Key(VK_RETURN);
    Click(BelowTheRows());
    SavePicture(L"cleared");
}
