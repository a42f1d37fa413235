#include "ui_language.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

using std::string_view;

constexpr LANGID kEnglish = 0x409;

struct Locale {
    string_view name;
    LANGID language;
};

// The numbers are those that the Windows languages have. Of a language's countries, its usual one
// comes first.
constexpr Locale kLocales[] = {
    {"af_ZA", 0x0436},  {"sq_AL", 0x041C},          {"am_ET", 0x045E},  {"ar_SA", 0x0401},
    {"ar_IQ", 0x0801},  {"ar_EG", 0x0C01},          {"ar_LY", 0x1001},  {"ar_DZ", 0x1401},
    {"ar_MA", 0x1801},  {"ar_TN", 0x1C01},          {"ar_OM", 0x2001},  {"ar_YE", 0x2401},
    {"ar_SY", 0x2801},  {"ar_JO", 0x2C01},          {"ar_LB", 0x3001},  {"ar_KW", 0x3401},
    {"ar_AE", 0x3801},  {"ar_BH", 0x3C01},          {"ar_QA", 0x4001},  {"hy_AM", 0x042B},
    {"as_IN", 0x044D},  {"az_AZ", 0x042C},          {"eu_ES", 0x042D},  {"be_BY", 0x0423},
    {"bn_BD", 0x0845},  {"bn_IN", 0x0445},          {"bs_BA", 0x141A},  {"br_FR", 0x047E},
    {"bg_BG", 0x0402},  {"my_MM", 0x0455},          {"ca_ES", 0x0403},  {"zh_CN", 0x0804},
    {"zh_TW", 0x0404},  {"zh_HK", 0x0C04},          {"zh_SG", 0x1004},  {"zh_MO", 0x1404},
    {"hr_HR", 0x041A},  {"hr_BA", 0x101A},          {"cs_CZ", 0x0405},  {"da_DK", 0x0406},
    {"nl_NL", 0x0413},  {"nl_BE", 0x0813},          {"en_US", 0x0409},  {"en_GB", 0x0809},
    {"en_AU", 0x0C09},  {"en_CA", 0x1009},          {"en_NZ", 0x1409},  {"en_IE", 0x1809},
    {"en_ZA", 0x1C09},  {"en_JM", 0x2009},          {"en_BZ", 0x2809},  {"en_TT", 0x2C09},
    {"en_ZW", 0x3009},  {"en_PH", 0x3409},          {"en_HK", 0x3C09},  {"en_IN", 0x4009},
    {"en_MY", 0x4409},  {"en_SG", 0x4809},          {"et_EE", 0x0425},  {"fo_FO", 0x0438},
    {"fil_PH", 0x0464}, {"fi_FI", 0x040B},          {"fr_FR", 0x040C},  {"fr_BE", 0x080C},
    {"fr_CA", 0x0C0C},  {"fr_CH", 0x100C},          {"fr_LU", 0x140C},  {"fr_MC", 0x180C},
    {"fy_NL", 0x0462},  {"gl_ES", 0x0456},          {"ka_GE", 0x0437},  {"de_DE", 0x0407},
    {"de_CH", 0x0807},  {"de_AT", 0x0C07},          {"de_LU", 0x1007},  {"de_LI", 0x1407},
    {"el_GR", 0x0408},  {"kl_GL", 0x046F},          {"gn_PY", 0x0474},  {"gu_IN", 0x0447},
    {"ha_NG", 0x0468},  {"he_IL", 0x040D},          {"iw_IL", 0x040D},  {"hi_IN", 0x0439},
    {"hu_HU", 0x040E},  {"is_IS", 0x040F},          {"ig_NG", 0x0470},  {"id_ID", 0x0421},
    {"ga_IE", 0x083C},  {"it_IT", 0x0410},          {"it_CH", 0x0810},  {"ja_JP", 0x0411},
    {"kn_IN", 0x044B},  {"kk_KZ", 0x043F},          {"km_KH", 0x0453},  {"rw_RW", 0x0487},
    {"ko_KR", 0x0412},  {"ky_KG", 0x0440},          {"lo_LA", 0x0454},  {"lv_LV", 0x0426},
    {"lt_LT", 0x0427},  {"lb_LU", 0x046E},          {"mk_MK", 0x042F},  {"ms_MY", 0x043E},
    {"ms_BN", 0x083E},  {"ml_IN", 0x044C},          {"mt_MT", 0x043A},  {"mi_NZ", 0x0481},
    {"mr_IN", 0x044E},  {"mn_MN", 0x0450},          {"ne_NP", 0x0461},  {"nb_NO", 0x0414},
    {"no_NO", 0x0414},  {"nn_NO", 0x0814},          {"oc_FR", 0x0482},  {"or_IN", 0x0448},
    {"ps_AF", 0x0463},  {"fa_IR", 0x0429},          {"pl_PL", 0x0415},  {"pt_BR", 0x0416},
    {"pt_PT", 0x0816},  {"pa_IN", 0x0446},          {"pa_PK", 0x0846},  {"ro_RO", 0x0418},
    {"ro_MD", 0x0818},  {"rm_CH", 0x0417},          {"ru_RU", 0x0419},  {"ru_MD", 0x0819},
    {"se_NO", 0x043B},  {"se_SE", 0x083B},          {"se_FI", 0x0C3B},  {"gd_GB", 0x0491},
    {"sr_RS", 0x281A},  {"sr_RS@latin", 0x241A},    {"sr_ME", 0x301A},  {"sr_ME@latin", 0x2C1A},
    {"sr_BA", 0x1C1A},  {"st_ZA", 0x0430},          {"si_LK", 0x045B},  {"sk_SK", 0x041B},
    {"sl_SI", 0x0424},  {"es_ES", 0x0C0A},          {"es_MX", 0x080A},  {"es_GT", 0x100A},
    {"es_CR", 0x140A},  {"es_PA", 0x180A},          {"es_DO", 0x1C0A},  {"es_VE", 0x200A},
    {"es_CO", 0x240A},  {"es_PE", 0x280A},          {"es_AR", 0x2C0A},  {"es_EC", 0x300A},
    {"es_CL", 0x340A},  {"es_UY", 0x380A},          {"es_PY", 0x3C0A},  {"es_BO", 0x400A},
    {"es_SV", 0x440A},  {"es_HN", 0x480A},          {"es_NI", 0x4C0A},  {"es_PR", 0x500A},
    {"es_US", 0x540A},  {"es_CU", 0x5C0A},          {"sw_KE", 0x0441},  {"sv_SE", 0x041D},
    {"sv_FI", 0x081D},  {"tg_TJ", 0x0428},          {"ta_IN", 0x0449},  {"ta_LK", 0x0849},
    {"tt_RU", 0x0444},  {"te_IN", 0x044A},          {"th_TH", 0x041E},  {"bo_CN", 0x0451},
    {"ti_ET", 0x0473},  {"ti_ER", 0x0873},          {"tn_ZA", 0x0432},  {"ts_ZA", 0x0431},
    {"tr_TR", 0x041F},  {"tk_TM", 0x0442},          {"ug_CN", 0x0480},  {"uk_UA", 0x0422},
    {"hsb_DE", 0x042E}, {"dsb_DE", 0x082E},         {"ur_PK", 0x0420},  {"ur_IN", 0x0820},
    {"uz_UZ", 0x0443},  {"uz_UZ@cyrillic", 0x0843}, {"vi_VN", 0x042A},  {"cy_GB", 0x0452},
    {"wo_SN", 0x0488},  {"xh_ZA", 0x0434},          {"sah_RU", 0x0485}, {"yi_US", 0x043D},
    {"yo_NG", 0x046A},  {"zu_ZA", 0x0435},
};

string_view Language_Of(string_view name) noexcept {
    return name.substr(0, name.find('_'));
}

LANGID Find(string_view name) noexcept {
    const string_view country = name.substr(0, name.find_first_of(".@"));
    const std::size_t at = name.find('@');
    const string_view modifier = at == name.npos ? string_view() : name.substr(at);
    LANGID found = 0, plain = 0;
    for (const Locale& locale : kLocales) {
        const string_view base = locale.name.substr(0, locale.name.find('@'));
        const bool matches = locale.name.substr(base.size()) == modifier;
        if (base == country && matches) return locale.language;
        if (base == country && plain == 0) plain = locale.language;
        if (found == 0 && Language_Of(base) == Language_Of(country)) found = locale.language;
    }
    if (plain != 0) return plain;
    return found != 0 ? found : kEnglish;
}

// The value of LANG in a file of such settings, or "".
string_view Read_Setting(const char* path, char* line, int room) noexcept {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "re"),
                                                               &std::fclose);
    constexpr string_view kName = "LANG=";
    while (file && std::fgets(line, room, file.get())) {
        string_view text(line);
        if (!text.starts_with(kName)) continue;
        text.remove_prefix(kName.size());
        text = text.substr(0, text.find_last_not_of(" \t\r\n\"\'") + 1);
        const std::size_t first = text.find_first_not_of("\"\'");
        if (first != text.npos) return text.substr(first);
    }
    return {};
}

}  // namespace

LANGID GetUserDefaultUILanguage() noexcept {
    for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* const name = std::getenv(variable); name && *name != '\0')
            return Find(name);
    return kEnglish;
}

LANGID GetSystemDefaultUILanguage() noexcept {
    char line[256];
    for (const char* const path : {"/etc/locale.conf", "/etc/default/locale"})
        if (const string_view name = Read_Setting(path, line, sizeof line); !name.empty())
            return Find(name);
    return kEnglish;
}
