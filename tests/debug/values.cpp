// One value of each kind that debuggers show, whole and damaged.
#include <RVUtils/RVUtils.h>

#include <cstring>
#include <limits>

COleDateTime first_day{-657434.0}, before_day_0{-1.25}, almost_midnight{1.999999}, beyond{3e6};
COleDateTime not_a_number{std::numeric_limits<DATE>::quiet_NaN()};
COleDateTime null_moment{1.0, COleDateTime::null};
COleDateTime wild_status{1.0, static_cast<COleDateTime::DateTimeStatus>(0x11)};

namespace {

// An object whose memory may hold anything: it is neither constructed nor destroyed.
template <class T>
union Damaged {
    Damaged(unsigned char fill) { std::memset(static_cast<void*>(this), fill, sizeof *this); }
    ~Damaged() {}

    T value;
};

RVVariant Variant_Of(VARTYPE tag, ULONGLONG bits) {
    RVVariant variant;
    variant.vt = tag;
    std::memcpy(&variant.dblVal, &bits, sizeof bits);
    return variant;
}

// Debuggers stop here.
[[gnu::noinline]] int Stop() {
    asm volatile("");
    return 0;
}

}  // namespace

int main() {
    CString empty_text, short_text("caf\xC3\xA9");
    RVString long_text("a text that has to have its own block");
    CString nul_inside("a\0b", 3);
    Damaged<CString> zero_text(0), wild_text(0xEE);
    CComBSTR wide_text(L"wide \u20AC"), no_wide_text;
    CComBSTR wide_nul;
    wide_nul.Attach(SysAllocStringLen(L"x\0y", 3));

    RVDateTime moment, invalid_moment, late_moment;
    if (!moment.Set_Value(2024, 2, 29, 23, 59, 58)) return 1;
    if (!late_moment.Set_Value(9999, 12, 31, 23, 59, 59)) return 1;
    static_cast<void>(invalid_moment.Set_Value(2023, 2, 29, 0, 0, 0));
    Damaged<RVDateTime> unheld_moment(0), wild_moment(0xEE);

    RVVariant no_value, truth(true), number(static_cast<long>(-7)), real(2.5),
        text(L"in a variant");
    RVVariant letter('A'), null_text(static_cast<const wchar_t*>(nullptr));
    RVVariant money = Variant_Of(VT_CY, static_cast<ULONGLONG>(-15000LL));
    RVVariant day = Variant_Of(VT_DATE, 0x3FF8000000000000);  // 1.5
    RVVariant status = Variant_Of(VT_ERROR, 0x80004005);
    RVVariant large = Variant_Of(VT_UI8, 0xFFFFFFFFFFFFFFFF);
    RVVariant no_tag = Variant_Of(0x1EE, 0), wild_text_variant = Variant_Of(VT_BSTR, 16);
    SHORT elsewhere = 12;
    RVVariant by_reference = Variant_Of(VT_BYREF | VT_I2, reinterpret_cast<ULONGLONG>(&elsewhere));
    RVVariant array, broken_array;
    array.vt = VT_ARRAY | VT_I2;
    array.parray = SafeArrayCreateVector(VT_I2, 5, 3);
    for (SHORT i = 0; i < 3; ++i)
        static_cast<SHORT*>(array.parray->pvData)[i] = static_cast<SHORT>(10 * i);
    broken_array.vt = VT_ARRAY | VT_I4;
    broken_array.parray = array.parray;  // of other elements

    CStringArray no_texts, texts;
    texts.Add("one");
    texts.Add("two");
    CList<int> list;
    for (int element : {3, 1, 2})
        list.AddTail(element);
    CMap<int, int, CString, const char*> no_map, map;
    map.SetAt(1, "first");
    map.SetAt(18, "second");
    Damaged<CList<int>> zero_list(0), wild_list(0xEE);
    Damaged<CMap<int, int, int, int>> wild_map(0x11);

    const GUID guid = {
        0x01234567, 0x89AB, 0xCDEF, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}};
    RVGUIDNode node(guid, nullptr);
    RVNameCache cache;
    RVString name("a name");
    cache.Add_Association(77, name);
    RVDwordCrossRef links;
    for (ULONG id : {5u, 6u, 5u})
        links.Add_Link(9, id);

    const int result = Stop();
    by_reference.vt = wild_text_variant.vt = no_tag.vt = broken_array.vt = VT_EMPTY;
    return result;
}
