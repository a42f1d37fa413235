// _get_timezone, for compilers whose import library of the run-time library lacks it, although
// their headers declare it. Those headers stay out: they take it for imported.

extern "C" {

__declspec(dllimport) extern long _timezone;
__declspec(dllimport) void _tzset();

__declspec(dllexport) int _get_timezone(long* seconds) {
    constexpr int kInvalidArgument = 22;
    if (!seconds) return kInvalidArgument;
    _tzset();
    *seconds = _timezone;
    return 0;
}
}
