// Any operations in any order on two values: whatever they hold, parts, texts and comparisons
// agree with each other.
#include <RVUtils/rvdatetm.h>
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>

#include "silence.h"

namespace {

void Check(bool right) {
    if (!right) std::abort();
}

void Check_Parts(RVDateTime& object) {
    COleDateTime value;
    object.Get_Value(value);
    const bool has_moment = object.Get_Year() != -1;
    Check(!has_moment || value.m_status == COleDateTime::valid);
    RVString text, fixed;
    object.Get_Db_Value(text);
    Check(RVDateTime::Validate_Db_Value(text) == has_moment);
    object.Get_Fixed_Date_Time(fixed);
    Check(fixed.GetLength() == (has_moment ? 19 : 25));
    if (!has_moment) {
        Check(object.Get_Second() == -1 && object.Get_Day_Of_Week() == -1);
        return;
    }
    RVDateTime same(text), copy(object);
    Check(same.Compare_Date(object) == 0 && same.Compare_Time(object) == 0);
    Check(copy.Set_Value(object.Get_Year(), object.Get_Month(), object.Get_Day(), object.Get_Hour(),
                         object.Get_Minute(), object.Get_Second()));
    Check(copy == same);
}

void Check_Order(RVDateTime& left, RVDateTime& right) {
    Check((left < right) == (right > left));
    Check((left == right) == (right == left));
    Check((left != right) == !(left == right));
    Check((left <= right) == (left < right || left == right));
    Check((left >= right) == (left > right || left == right));
    Check(left.Compare_Date(right) == -right.Compare_Date(left));
    Check(left.Compare_Time(right) == -right.Compare_Time(left));
    if (left.Get_Year() != -1 && right.Get_Year() != -1) {
        const short date = left.Compare_Date(right);
        const short order = date != 0 ? date : left.Compare_Time(right);
        Check(order == 0 || (order < 0) == (left < right));
    }
}

RVString Consume_Text(FuzzedDataProvider& input) {
    const std::string bytes = input.ConsumeRandomLengthString(80);
    return CString(bytes.data(), static_cast<int>(bytes.size()));
}

// One operation. Its result and its reports are its own affair.
void Operate(FuzzedDataProvider& input, RVDateTime& object, const RVDateTime& other) {
    const auto part = [&input] { return input.ConsumeIntegral<short>(); };
    const auto count = [&input] { return input.ConsumeIntegral<LONG>(); };
    const auto status = input.ConsumeIntegralInRange(0, 2);
    COleDateTime record = {input.ConsumeFloatingPoint<double>(),
                           static_cast<COleDateTime::DateTimeStatus>(status)};
    RVString text = Consume_Text(input);
    LONG seconds = 0;
    switch (input.ConsumeIntegralInRange(0, 21)) {
        case 0:
            object = other;
            break;
        case 1:
            object.Set_Value(record);
            break;
        case 2:
            std::ignore = object.Set_Value(part(), part(), part(), part(), part(), part());
            break;
        case 3:
            std::ignore = object.Set_Date_Value(part(), part(), part());
            break;
        case 4:
            std::ignore = object.Set_Time_Value(part(), part(), part());
            break;
        case 5:
            std::ignore = object.Set_Time_Value(count());
            break;
        case 6:
            std::ignore = object.Set_Hour(part());
            break;
        case 7:
            std::ignore = object.Set_Minute(part());
            break;
        case 8:
            std::ignore = object.Set_Second(part());
            break;
        case 9:
            object.Add_Date(count(), count(), count());
            break;
        case 10:
            object.Add_Time(count(), count(), count());
            break;
        case 11:
            std::ignore = object.Set_Value(count(), part() % 2 == 0);
            break;
        case 12:
            std::ignore = object.Set_Date_Value(record);
            break;
        case 13:
            std::ignore = object.Set_Time_Value(record);
            break;
        case 14:
            object.Get_Date_Value(record);
            break;
        case 15:
            object.Get_Time_Value(record);
            break;
        case 16:
            std::ignore = object.Set_Db_Value(text);
            break;
        case 17:
            std::ignore = object.Set_Value(text);
            break;
        case 18:
            std::ignore = object.Set_Date_Value(text);
            break;
        case 19:
            std::ignore = object.Set_Time_Value(text);
            break;
        case 20:
            object.Get_Value(text);
            break;
        default:
            try {
                object.Get_Value(seconds, part() % 2 == 0);
            } catch (const ATL::CAtlException& error) {
                Check(error.m_hr == E_INVALIDARG && seconds == 0);
            }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    RVDateTime left, right;
    while (input.remaining_bytes() > 0) {
        Operate(input, left, right);
        Check_Parts(left);
        Check_Order(left, right);
        if (input.ConsumeBool()) std::swap(left, right);
    }
    return 0;
}
