// Columns of the list control, and where their widths are kept.
#include <RVUtils/RVResourceLoader.h>
#include <RVUtils/RVSettings.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "list.h"
#include "report_recorder.h"
#include "test_ids.h"

namespace {

using namespace rv_test;

// A settings host that writes down how it is called, or refuses.
class Host final : public IRVHostServices, public IRVSettingsStore {
public:
    enum class Refusal { kNone, kServices, kStore, kText };

    HRESULT QueryInterface(REFIID id, void** object) override {
        *object = nullptr;
        if (refusal == Refusal::kServices || !IsEqualGUID(id, IID_IRVHostServices)) return E_FAIL;
        *object = static_cast<IRVHostServices*>(this);
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return ++references; }
    ULONG Release() override { return --references; }
    HRESULT Has_Service(REFIID) override { return E_FAIL; }
    HRESULT Get_Service(REFIID id, void** service) override {
        *service = nullptr;
        if (refusal == Refusal::kStore || !IsEqualGUID(id, IID_IRVSettingsStore)) return E_FAIL;
        *service = static_cast<IRVSettingsStore*>(this);
        AddRef();
        return S_OK;
    }
    HRESULT Begin_Read(IUnknown* host, ULONG flags) override {
        EXPECT_EQ(host, Unknown());
        EXPECT_EQ(flags, 0U);
        calls += "begin ";
        return E_FAIL;
    }
    HRESULT Finish_Write() override {
        calls += "finish ";
        return E_FAIL;
    }
    HRESULT Has_Text(BSTR, ULONG) override { return E_FAIL; }
    HRESULT Remove_Text(BSTR, ULONG) override { return E_FAIL; }
    HRESULT Get_Text(BSTR key, ULONG, BSTR* text) override {
        calls += "get ";
        const auto found = texts.find(key);
        if (refusal == Refusal::kText || found == texts.end()) return E_FAIL;
        *text = SysAllocString(found->second.c_str());
        return S_OK;
    }
    HRESULT Set_Text(BSTR key, ULONG, BSTR value) override {
        calls += "set ";
        texts[key] = value;
        return E_FAIL;
    }

    IUnknown* Unknown() { return static_cast<IRVHostServices*>(this); }

    Refusal refusal = Refusal::kNone;
    ULONG references = 1;
    std::string calls;
    std::map<std::wstring, std::wstring> texts;
};

constexpr RV_list_ctrl_columns kThird[] = {
    {0, IDS_HEADING_NAME, 30, 1}, {1, IDS_HEADING_SIZE, 30, 0x12}, {2, IDS_HEADING_DATE, 40, 0x13}};

constexpr wchar_t kKey[] = L"ListCtrlColWidthfiles";

RVResourceLoader& Loader() {
    static RVResourceLoader loader(nullptr, 0, GetModuleHandleA(nullptr));
    return loader;
}

// A list with a usable width of 300 pixels.
struct ColumnList : ShownList<RVListCtrl> {
    explicit ColumnList(IUnknown* host = nullptr, const char* name = "files")
        : ColumnList(host, RVString(name)) {}
    ColumnList(IUnknown* host, RVString name) : ShownList(host, &name) {
        RECT frame = {}, inside = {};
        GetWindowRect(list.m_hWnd, &frame);
        GetClientRect(list.m_hWnd, &inside);
        const int border = frame.right - frame.left - inside.right;
        MoveWindow(list.m_hWnd, 0, 0, 300 + GetSystemMetrics(SM_CXVSCROLL) + border, 200, FALSE);
    }
    bool Init(RV_column_width_type type = RV_column_width_percent) {
        return list.Init_Columns(Loader(), 0, type, kThird, 3);
    }
};

TEST(ListColumns, TakeStoredWidthsBeforeTheTables) {
    const auto wrong = static_cast<RV_column_width_type>(7);
    const struct {
        const char* why;
        const wchar_t* stored;
        RV_column_width_type type;
        std::vector<int> widths;
        Reports reports;
    } kRows[] = {
        {"percent", nullptr, RV_column_width_percent, {90, 90, 120}, {}},
        {"pixels", nullptr, RV_column_width_pixels, {30, 30, 40}, {}},
        {"stored", L"120\\80\\45", RV_column_width_percent, {120, 80, 45}, {}},
        {"stored, for pixels", L"120\\80\\45", RV_column_width_pixels, {120, 80, 45}, {}},
        {"two stored", L"11\\12", RV_column_width_percent, {11, 12, 120}, {}},
        {"four stored", L"11\\12\\13\\14", RV_column_width_percent, {11, 12, 13}, {}},
        {"an empty text", L"", RV_column_width_percent, {90, 90, 120}, {}},
        {"no numbers", L"x\\\\7x", RV_column_width_percent, {0, 0, 7}, {}},
        {"no such type", L"11", wrong, {11, 11, 11}, {{17, "RVLstCtl"}, {17, "RVLstCtl"}}},
    };
    for (const auto& row : kRows) {
        ReportRecorder reports;
        Host host;
        if (row.stored) host.texts[kKey] = row.stored;
        {
            ColumnList shown(host.Unknown());
            EXPECT_TRUE(shown.Init(row.type)) << row.why;
            EXPECT_EQ(Widths_Of(shown.list), row.widths) << row.why;
            EXPECT_EQ(host.references, 2U) << row.why;
            EXPECT_EQ(host.calls, "begin get ") << row.why;
        }
        EXPECT_EQ(reports.Take(), row.reports) << row.why;
        EXPECT_EQ(host.references, 1U) << row.why;
    }
}

TEST(ListColumns, AreMadeAsTheTableSays) {
    ReportRecorder reports;
    ColumnList shown;
    EXPECT_FALSE(shown.list.Init_Columns(Loader(), 0, RV_column_width_pixels, nullptr, 3));
    EXPECT_FALSE(shown.list.Init_Columns(Loader(), 0, RV_column_width_pixels, kThird, 0));
    EXPECT_EQ(reports.Take(), (Reports{{12, "RVLstCtl"}, {13, "RVLstCtl"}}));
    EXPECT_EQ(shown.list.Get_Num_Columns(), 0U);
    EXPECT_TRUE(shown.Init());
    constexpr RV_list_ctrl_columns kMore[] = {{3, 9999, 10, 0}, {4, IDS_HEADING_NAME, 0, 0x31}};
    EXPECT_TRUE(shown.list.Init_Columns(Loader(), 0, RV_column_width_pixels, kMore, 2));
    EXPECT_EQ(reports.Take(), (Reports{{17, "RVLstCtl"}}));
    EXPECT_EQ(Widths_Of(shown.list), (std::vector<int>{90, 90, 120, 10, 0}));
    EXPECT_EQ(shown.list.Get_Num_Columns(), 5U);
    EXPECT_TRUE(Send(shown.list.m_hWnd, LVM_GETEXTENDEDLISTVIEWSTYLE) & LVS_EX_FULLROWSELECT);
    constexpr struct {
        const char* heading;
        int format;
        const char* first_click;
    } kExpected[] = {{"Name", HDF_LEFT, "^----"},
                     {"Size", HDF_RIGHT, "-v---"},
                     {"Date", HDF_CENTER, "--v--"},
                     {"", HDF_LEFT, "---^-"},
                     {"Name", HDF_LEFT, "----v"}};
    EXPECT_EQ(Arrows_Of(shown.list), "^----");
    for (int column = 0; column < 5; ++column) {
        char heading[32] = {};
        HDITEMA item = {};
        item.mask = HDI_TEXT | HDI_FORMAT;
        item.pszText = heading;
        item.cchTextMax = sizeof heading;
        EXPECT_TRUE(shown.list.GetHeaderCtrl()->GetItem(column, &item));
        EXPECT_STREQ(heading, kExpected[column].heading);
        EXPECT_EQ(item.fmt & HDF_JUSTIFYMASK, kExpected[column].format) << column;
    }
    for (int column = 0; column < 5; ++column) {
        shown.list.Set_Column_Sort(column);
        EXPECT_EQ(Arrows_Of(shown.list), kExpected[column].first_click);
    }
    // With no column left, what descends begins afresh.
    while (shown.list.Get_Num_Columns() > 0)
        Send(shown.list.m_hWnd, LVM_DELETECOLUMN, 0);
    LVCOLUMNA description = {};
    EXPECT_EQ(shown.list.InsertColumn(0, &description, true), 0);
    EXPECT_EQ(shown.list.InsertColumn(1, "second", LVCFMT_LEFT, 50, -1, true), 1);
    shown.list.Set_Column_Sort(1);
    EXPECT_EQ(Arrows_Of(shown.list), "-^");
}

TEST(ListColumns, ShowTheDirectionOfAFirstClick) {
    ColumnList shown;
    EXPECT_EQ(shown.list.InsertColumn(0, "first", LVCFMT_LEFT, 50, -1, false), 0);
    EXPECT_EQ(Arrows_Of(shown.list), "v");
    ColumnList silent;
    silent.list.Set_Allow_Sort(false);
    EXPECT_TRUE(silent.Init());
    EXPECT_EQ(Arrows_Of(silent.list), "---");
}

TEST(ListColumns, StoreTheirWidthsWhenTheWindowEnds) {
    using Refusal = Host::Refusal;
    constexpr struct {
        const char* why;
        Refusal refusal;
        const char* name;
        int columns;
        const char* calls;
        const wchar_t* stored;
        std::size_t reports = 0;
    } kRows[] = {
        {"stored", Refusal::kNone, "files", 3, "begin get set finish ", L"90\\90\\120"},
        {"no text yet", Refusal::kText, "files", 3, "begin get set finish ", L"90\\90\\120"},
        {"no columns", Refusal::kNone, "files", 0, "set finish ", L""},
        {"no name", Refusal::kNone, "", 3, "", nullptr},
        {"no services", Refusal::kServices, "files", 3, "", nullptr, 1},
        {"no store", Refusal::kStore, "files", 3, "", nullptr, 1},
    };
    for (const auto& row : kRows) {
        ReportRecorder reports;
        Host host;
        host.refusal = row.refusal;
        std::optional<ColumnList> shown(std::in_place, host.Unknown(), row.name);
        EXPECT_TRUE(row.columns == 0 || shown->Init()) << row.why;
        EXPECT_EQ(Widths_Of(shown->list).size(), static_cast<std::size_t>(row.columns)) << row.why;
        shown->dialog.DestroyWindow();
        EXPECT_EQ(host.calls, row.calls) << row.why;
        EXPECT_EQ(host.texts.count(kKey), row.stored ? 1U : 0U) << row.why;
        EXPECT_EQ(host.texts[kKey], row.stored ? row.stored : L"") << row.why;
        EXPECT_EQ(reports.Take(), Reports(row.reports, {3, "RVLstCtl"})) << row.why;
        EXPECT_EQ(host.references, 2U) << row.why;
        shown.reset();
        EXPECT_EQ(host.references, 1U) << row.why;
    }
    Host host;
    {
        ColumnList shown(host.Unknown());
        EXPECT_TRUE(shown.Init());
        // The user drags the border behind the first column.
        HWND const header = Header_Of(shown.list);
        Send(header, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(90, 5));
        Send(header, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(140, 5));
        Send(header, WM_LBUTTONUP, 0, MAKELPARAM(140, 5));
        EXPECT_EQ(Widths_Of(shown.list)[0], 140);
        shown.list.DestroyWindow();
    }
    ColumnList again(host.Unknown());
    EXPECT_TRUE(again.Init());
    EXPECT_EQ(Widths_Of(again.list), (std::vector<int>{140, 90, 120}));
}

TEST(ListColumns, KeepTheArrowsBesideSmallImages) {
    ColumnList shown;
    EXPECT_TRUE(shown.Init());
    const auto arrows = [&] { return Send(Header_Of(shown.list), HDM_GETIMAGELIST); };
    const LRESULT before = arrows();
    EXPECT_NE(before, 0);
    CImageList small_images, large_images;
    ASSERT_TRUE(small_images.Create(16, 16, ILC_COLOR32, 0, 1));
    ASSERT_TRUE(large_images.Create(32, 32, ILC_COLOR32, 0, 1));
    EXPECT_FALSE(large_images.Create(32, 32, ILC_COLOR32, 0, 1));
    EXPECT_FALSE(large_images.Attach(small_images.GetSafeHandle()));
    EXPECT_FALSE(CImageList().Attach(nullptr));
    EXPECT_EQ(shown.list.SetImageList(&small_images, LVSIL_SMALL), nullptr);
    EXPECT_EQ(shown.list.SetImageList(&large_images, LVSIL_NORMAL), nullptr);
    EXPECT_EQ(arrows(), before);
    EXPECT_EQ(shown.list.SetImageList(nullptr, LVSIL_SMALL), &small_images);
    HIMAGELIST const raw = large_images.Detach();
    CImageList* const plain = shown.list.SetImageList(nullptr, LVSIL_NORMAL);
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->GetSafeHandle(), raw);
    EXPECT_EQ(arrows(), before);
    EXPECT_TRUE(ImageList_Destroy(raw));
}

TEST(ListColumns, SwitchTheViewByTheStyle) {
    ReportRecorder reports;
    ColumnList shown;
    for (const ULONG type : {ULONG{LVS_LIST}, ULONG{LVS_ICON}, ULONG{LVS_REPORT}}) {
        shown.list.Set_List_View_Type(type);
        EXPECT_EQ(shown.list.Get_List_View_Type(), type);
    }
    EXPECT_EQ(reports.Take(), Reports{});
    shown.list.Set_List_View_Type(0x4 | LVS_REPORT);
    EXPECT_EQ(reports.Take(), (Reports{{13, "RVLstCtl"}}));
    EXPECT_EQ(Style_Of(shown.list.m_hWnd) & 0x7, 0x5U) << "applied all the same";
}

void Expect_Nothing(RVListCtrl& list) {
    ReportRecorder reports;
    int column = 77, first = 77, second = 77;
    bool ascending = true;
    list.Set_Column_Sort(1);
    list.Set_Column_Sort(-1, true);
    list.Get_Column_Sort(column, ascending);
    EXPECT_EQ(column, -1);
    list.Sort_Columns();
    EXPECT_FALSE(list.Get_Sort_Item_Idexes(1, 2, first, second));
    EXPECT_TRUE(list.Init_Columns(Loader(), 0, RV_column_width_pixels, kThird, 3));
    EXPECT_EQ(list.InsertColumn(0, "text", LVCFMT_LEFT, 10, -1, false), -1);
    EXPECT_EQ(list.Get_Num_Columns() + list.Get_List_View_Type(), 0U);
    list.Set_List_View_Type(9);
    EXPECT_EQ(list.SetImageList(nullptr, LVSIL_SMALL), nullptr);
    EXPECT_EQ(reports.Take(), Reports{});
}

TEST(ListColumns, NeedAWindow) {
    Host host;
    {
        ColumnList shown(host.Unknown());
        RVString name("files");
        RVListCtrl never_made(host.Unknown(), &name);
        Expect_Nothing(never_made);
        EXPECT_TRUE(shown.Init());
        EXPECT_TRUE(shown.list.DestroyWindow());
        Expect_Nothing(shown.list);
        EXPECT_TRUE(shown.list.Create(LVS_REPORT, kControlPlace, &shown.dialog, 1));
        EXPECT_TRUE(shown.Init());
        EXPECT_EQ(Arrows_Of(shown.list), "^--") << "in a second window";
        EXPECT_NE(Send(Header_Of(shown.list), HDM_GETIMAGELIST), 0);
    }
    EXPECT_EQ(host.references, 1U);
}

}  // namespace
