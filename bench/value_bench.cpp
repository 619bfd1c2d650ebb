// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Times, GUIDs and values, each next to the usual alternatives. A "baseline" is code written by hand for
// exactly this work, into a buffer of the caller: the minimum that any program must do.

#include "ZSpace/value/TZValue.h"
#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"
#include "bench/Opaque.h"

#include <benchmark/benchmark.h>

#include <absl/strings/str_cat.h>
#include <absl/strings/str_format.h>
#include <absl/time/civil_time.h>
#include <absl/time/clock.h>
#include <absl/time/time.h>
#include <any>
#include <array>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <memory>
#include <string>
#include <utility>

#if __has_include(<uuid/uuid.h>)
#include <uuid/uuid.h>
#endif

namespace {

using namespace ZSpace;

using Value = TZValueBase<ZTypeId>;

template <typename Operation>
void run(benchmark::State& state, Operation operation)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(operation());
}

// Hand-written baselines

constexpr std::array<std::array<char, 2>, 100> s_pairs = [] {
    std::array<std::array<char, 2>, 100> pairs{};
    for (unsigned i = 0; i < 100; ++i)
        pairs[i] = {static_cast<char>('0' + i / 10), static_cast<char>('0' + i % 10)};
    return pairs;
}();

struct Fields {
    unsigned year, month, day, hour, minute, second, milliseconds;
};

inline void putPair(char* to, unsigned number)
{
    std::memcpy(to, s_pairs[number].data(), 2);
}

inline char* putFields(char* to, const Fields& fields)
{
    std::memcpy(to, "0000-00-00T00:00:00", 19);
    putPair(to, fields.year / 100);
    putPair(to + 2, fields.year % 100);
    putPair(to + 5, fields.month);
    putPair(to + 8, fields.day);
    putPair(to + 11, fields.hour);
    putPair(to + 14, fields.minute);
    putPair(to + 17, fields.second);
    return to + 19;
}

inline char* putFieldsAndMilliseconds(char* to, const Fields& fields)
{
    char* end = putFields(to, fields);
    end[0] = '.';
    end[1] = static_cast<char>('0' + fields.milliseconds / 100);
    putPair(end + 2, fields.milliseconds % 100);
    return end + 4;
}

/// The calendar of the Gregorian cycle of 146,097 days, counted from March.
inline Fields fieldsOf(std::uint64_t secondsSince1970, unsigned milliseconds)
{
    const auto days = static_cast<unsigned>(secondsSince1970 / 86400) + 719468;
    const auto ofDay = static_cast<unsigned>(secondsSince1970 % 86400);
    const unsigned era = days / 146097;
    const unsigned ofEra = days % 146097;
    const unsigned yearOfEra = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
    const unsigned ofYear = ofEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned month = (5 * ofYear + 2) / 153;
    const unsigned day = ofYear - (153 * month + 2) / 5 + 1;
    return {yearOfEra + era * 400 + (month >= 10), month < 10 ? month + 3 : month - 9, day, ofDay / 3600,
        ofDay / 60 % 60, ofDay % 60, milliseconds};
}

/// The number in two digits; 100 or more if one is not a digit.
inline unsigned pairAt(const char* text)
{
    const auto tens = static_cast<unsigned char>(text[0] - '0');
    const auto ones = static_cast<unsigned char>(text[1] - '0');
    return tens < 10 && ones < 10 ? tens * 10U + ones : 100;
}

constexpr Fields s_fields{2024, 3, 5, 7, 8, 9, 42};

/// Runs an operation that writes to a buffer of the caller.
template <typename Write>
void runInto(benchmark::State& state, Write write)
{
    run(state, [&] {
        char text[64];
        auto length = write(text);
        benchmark::DoNotOptimize(text);
        return length;
    });
}

/// Runs the same for a result that is an array of its own, as a returned string is.
template <typename Write>
void runIntoNew(benchmark::State& state, Write write)
{
    run(state, [&] {
        std::unique_ptr<char[]> text(new char[64]);
        text[static_cast<std::size_t>(write(text.get()))] = 0;
        return text;
    });
}

// Each row comes twice: as a returned string, and written to an array of the caller.

// Time fields to text: 2024-03-05T07:08:09.042

const auto writeTimeText = [](char* to) { return putFieldsAndMilliseconds(to, opaque(s_fields)) - to; };

void timeText_baseline(benchmark::State& state)
{
    runIntoNew(state, writeTimeText);
}
BENCHMARK(timeText_baseline);

void timeTextIntoArray_baseline(benchmark::State& state)
{
    runInto(state, writeTimeText);
}
BENCHMARK(timeTextIntoArray_baseline);

void timeText_strftime(benchmark::State& state)
{
    std::tm record{};
    fill_tm(record, 9, 8, 7, 5, 3, 2024);
    runInto(state, [&](char* to) { return std::strftime(to, 64, "%Y-%m-%dT%H:%M:%S", &record); });
}
BENCHMARK(timeText_strftime);

const ZTime s_time(2024, 3, 5, 7, 8, 9, 42);

void timeText(benchmark::State& state)
{
    run(state, [] { return s_time.toCStringEx(); });
}
BENCHMARK(timeText);

void timeTextIntoArray(benchmark::State& state)
{
    run(state, [] {
        char text[ZTime::s_textCapacity];
        const long length = s_time.writeTextEx(text);
        benchmark::DoNotOptimize(text);
        return length;
    });
}
BENCHMARK(timeTextIntoArray);

void timeText_snprintf(benchmark::State& state)
{
    run(state, [] {
        char text[64];
        const int length = std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03d",
            s_time.Year(), s_time.Month(), s_time.Day(), s_time.Hour(), s_time.Minute(), s_time.Second(),
            s_time.MilliSeconds());
        benchmark::DoNotOptimize(text);
        return length;
    });
}
BENCHMARK(timeText_snprintf);

void timeText_fmtCompiled(benchmark::State& state)
{
    run(state, [] {
        char text[64];
        char* end = fmt::format_to(text, FMT_COMPILE("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}"),
            s_time.Year(), s_time.Month(), s_time.Day(), s_time.Hour(), s_time.Minute(), s_time.Second(),
            s_time.MilliSeconds());
        benchmark::DoNotOptimize(text);
        return end - text;
    });
}
BENCHMARK(timeText_fmtCompiled);

void timeText_abslFormatTime(benchmark::State& state)
{
    const absl::Time time = absl::FromCivil(absl::CivilSecond(2024, 3, 5, 7, 8, 9), absl::UTCTimeZone());
    run(state, [&] { return absl::FormatTime("%Y-%m-%dT%H:%M:%E3S", time, absl::UTCTimeZone()); });
}
BENCHMARK(timeText_abslFormatTime);

// Seconds since 1970 to text

constexpr unsigned int s_seconds = 1709622489;

const auto writeSecondsText = [](char* to) { return putFields(to, fieldsOf(opaque(s_seconds), 0)) - to; };

void secondsText_baseline(benchmark::State& state)
{
    runIntoNew(state, writeSecondsText);
}
BENCHMARK(secondsText_baseline);

void secondsTextIntoArray_baseline(benchmark::State& state)
{
    runInto(state, writeSecondsText);
}
BENCHMARK(secondsTextIntoArray_baseline);

void secondsText(benchmark::State& state)
{
    run(state, [] { return ZTime(opaque(s_seconds)).toCString(); });
}
BENCHMARK(secondsText);

void secondsTextIntoArray(benchmark::State& state)
{
    runInto(state, [](char* to) { return ZTime(opaque(s_seconds)).writeText(to); });
}
BENCHMARK(secondsTextIntoArray);

void secondsText_strftime(benchmark::State& state)
{
    runInto(state, [](char* to) {
        const std::time_t seconds = opaque(s_seconds);
        std::tm record{};
        gmtime_r(&seconds, &record);
        return std::strftime(to, 64, "%Y-%m-%dT%H:%M:%S", &record);
    });
}
BENCHMARK(secondsText_strftime);

// Now to text

const auto writeNowText = [](char* to) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const Fields fields =
        fieldsOf(static_cast<std::uint64_t>(now.tv_sec), static_cast<unsigned>(now.tv_nsec / 1'000'000));
    return putFieldsAndMilliseconds(to, fields) - to;
};

void nowText_baseline(benchmark::State& state)
{
    runIntoNew(state, writeNowText);
}
BENCHMARK(nowText_baseline);

void nowTextIntoArray_baseline(benchmark::State& state)
{
    runInto(state, writeNowText);
}
BENCHMARK(nowTextIntoArray_baseline);

void nowText(benchmark::State& state)
{
    run(state, [] { return ZTime(true).toCStringEx(); });
}
BENCHMARK(nowText);

void nowTextIntoArray(benchmark::State& state)
{
    runInto(state, [](char* to) { return ZTime(true).writeTextEx(to); });
}
BENCHMARK(nowTextIntoArray);

void nowText_strftime(benchmark::State& state)
{
    runInto(state, [](char* to) {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        std::tm record{};
        gmtime_r(&now.tv_sec, &record);
        return std::strftime(to, 64, "%Y-%m-%dT%H:%M:%S", &record);
    });
}
BENCHMARK(nowText_strftime);

// Text to time fields

const char* const s_timeText = "2024-03-05T07:08:09";

void timeParse_baseline(benchmark::State& state)
{
    run(state, [] {
        const char* text = opaque(s_timeText);
        Fields fields{};
        if (std::strlen(text) != 19 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':'
            || text[16] != ':')
            return fields;
        const unsigned century = pairAt(text);
        const unsigned ofCentury = pairAt(text + 2);
        fields = {century * 100 + ofCentury, pairAt(text + 5), pairAt(text + 8), pairAt(text + 11),
            pairAt(text + 14), pairAt(text + 17), 0};
        const bool isValid = ofCentury < 100 && fields.year < 10'000 && fields.month < 13 && fields.day < 32
            && fields.hour < 24 && fields.minute < 60 && fields.second < 60;
        return isValid ? fields : Fields{};
    });
}
BENCHMARK(timeParse_baseline);

void timeParse(benchmark::State& state)
{
    run(state, [] { return ZTime(opaque(s_timeText)); });
}
BENCHMARK(timeParse);

void timeParse_sscanf(benchmark::State& state)
{
    run(state, [] {
        std::tm record{};
        std::sscanf(opaque(s_timeText), "%d-%d-%dT%d:%d:%d", &record.tm_year, &record.tm_mon, &record.tm_mday,
            &record.tm_hour, &record.tm_min, &record.tm_sec);
        return record;
    });
}
BENCHMARK(timeParse_sscanf);

void timeParse_strptime(benchmark::State& state)
{
    run(state, [] {
        std::tm record{};
        strptime(opaque(s_timeText), "%Y-%m-%dT%H:%M:%S", &record);
        return record;
    });
}
BENCHMARK(timeParse_strptime);

void timeParse_absl(benchmark::State& state)
{
    run(state, [] {
        absl::CivilSecond time;
        absl::ParseCivilTime(opaque(s_timeText), &time);
        return time;
    });
}
BENCHMARK(timeParse_absl);

// The current time as fields, on one and two threads

void timeNow(benchmark::State& state)
{
    run(state, [] { return ZTime(true); });
}
BENCHMARK(timeNow)->ThreadRange(1, 2);

void timeNow_gmtime_r(benchmark::State& state)
{
    run(state, [] {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        std::tm record{};
        gmtime_r(&now.tv_sec, &record);
        return record;
    });
}
BENCHMARK(timeNow_gmtime_r)->ThreadRange(1, 2);

void timeNow_absl(benchmark::State& state)
{
    run(state, [] { return absl::ToCivilSecond(absl::Now(), absl::UTCTimeZone()); });
}
BENCHMARK(timeNow_absl)->ThreadRange(1, 2);

void timeNow_clockAlone(benchmark::State& state)
{
    run(state, [] { return GetSystemTimeMillis(); });
}
BENCHMARK(timeNow_clockAlone);

// Seconds between two times

void timeDifference(benchmark::State& state)
{
    run(state, [] { return opaque(ZTime(2025, 1, 2, 3, 4, 5, 0)) - opaque(s_time); });
}
BENCHMARK(timeDifference);

void timeDifference_mktime(benchmark::State& state)
{
    run(state, [] {
        std::tm a{};
        std::tm b{};
        fill_tm(a, 5, 4, 3, 2, 1, 2025);
        fill_tm(b, 9, 8, 7, 5, 3, 2024);
        return std::mktime(&a) - std::mktime(&b);
    });
}
BENCHMARK(timeDifference_mktime);

void timeDifference_absl(benchmark::State& state)
{
    run(state, [] {
        return opaque(absl::CivilSecond(2025, 1, 2, 3, 4, 5))
            - opaque(absl::CivilSecond(2024, 3, 5, 7, 8, 9));
    });
}
BENCHMARK(timeDifference_absl);

// GUIDs

const ZGUID s_guid(0x00112233, 0x4455, 0x6677, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF);
const char* const s_guidText = "{00112233-4455-6677-8899-aabbccddeeff}";

constexpr std::array<std::array<char, 2>, 256> s_hexPairs = [] {
    std::array<std::array<char, 2>, 256> pairs{};
    for (unsigned i = 0; i < 256; ++i)
        pairs[i] = {"0123456789abcdef"[i / 16], "0123456789abcdef"[i % 16]};
    return pairs;
}();

/// Where each byte of a GUID is in its text form.
constexpr int s_hexPlaces[]{7, 5, 3, 1, 12, 10, 17, 15, 20, 22, 25, 27, 29, 31, 33, 35};

const auto writeGuidText = [](char* to) {
    unsigned char bytes[sizeof(ZGUID)];
    std::memcpy(bytes, &s_guid, sizeof bytes);
    benchmark::DoNotOptimize(bytes);
    std::memcpy(to, "{00000000-0000-0000-0000-000000000000}", 38);
    for (int i = 0; i < 16; ++i)
        std::memcpy(to + s_hexPlaces[i], s_hexPairs[bytes[i]].data(), 2);
    return 38;
};

void guidText_baseline(benchmark::State& state)
{
    runIntoNew(state, writeGuidText);
}
BENCHMARK(guidText_baseline);

void guidTextIntoArray_baseline(benchmark::State& state)
{
    runInto(state, writeGuidText);
}
BENCHMARK(guidTextIntoArray_baseline);

void guidText(benchmark::State& state)
{
    run(state, [] { return s_guid.toCString(); });
}
BENCHMARK(guidText);

void guidTextIntoArray(benchmark::State& state)
{
    run(state, [] {
        std::array<char, ZGUID::s_textLength> text;
        s_guid.writeText(text.data());
        return text;
    });
}
BENCHMARK(guidTextIntoArray);

void guidText_snprintf(benchmark::State& state)
{
    run(state, [] {
        char text[64];
        const unsigned char* b = s_guid.data4;
        const int length =
            std::snprintf(text, sizeof text, "{%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x}",
                s_guid.data1, s_guid.data2, s_guid.data3, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
        benchmark::DoNotOptimize(text);
        return length;
    });
}
BENCHMARK(guidText_snprintf);

void guidText_boost(benchmark::State& state)
{
    const boost::uuids::uuid uuid = boost::uuids::string_generator()(s_guidText);
    run(state, [&] { return boost::uuids::to_string(uuid); });
}
BENCHMARK(guidText_boost);

constexpr unsigned char s_noHexDigit = 0x80;

constexpr std::array<unsigned char, 256> s_hexValues = [] {
    std::array<unsigned char, 256> values{};
    values.fill(s_noHexDigit);
    for (unsigned char i = 0; i < 16; ++i) {
        values[static_cast<unsigned char>("0123456789abcdef"[i])] = i;
        values[static_cast<unsigned char>("0123456789ABCDEF"[i])] = i;
    }
    return values;
}();

void guidParse_baseline(benchmark::State& state)
{
    run(state, [] {
        const auto* text = reinterpret_cast<const unsigned char*>(opaque(s_guidText));
        std::array<unsigned char, 16> bytes{};
        if (std::strlen(opaque(s_guidText)) != 38 || text[0] != '{' || text[9] != '-' || text[14] != '-'
            || text[19] != '-' || text[24] != '-')
            return bytes;
        unsigned seen = 0;
        for (std::size_t i = 0; i < 16; ++i) {
            const unsigned high = s_hexValues[text[s_hexPlaces[i]]];
            const unsigned low = s_hexValues[text[s_hexPlaces[i] + 1]];
            seen |= high | low;
            bytes[i] = static_cast<unsigned char>(high << 4 | low);
        }
        return seen < s_noHexDigit ? bytes : std::array<unsigned char, 16>{};
    });
}
BENCHMARK(guidParse_baseline);

#if __has_include(<uuid/uuid.h>)
void guidText_libuuid(benchmark::State& state)
{
    uuid_t uuid;
    uuid_parse("00112233-4455-6677-8899-aabbccddeeff", uuid);
    runInto(state, [&](char* to) {
        uuid_unparse_lower(uuid, to);
        return 36;
    });
}
BENCHMARK(guidText_libuuid);

void guidParse_libuuid(benchmark::State& state)
{
    const char* const text = "00112233-4455-6677-8899-aabbccddeeff";
    run(state, [&] {
        std::array<unsigned char, 16> uuid;
        uuid_parse(opaque(text), uuid.data());
        return uuid;
    });
}
BENCHMARK(guidParse_libuuid);
#endif

void guidParse(benchmark::State& state)
{
    run(state, [] { return ZGUID(opaque(s_guidText)); });
}
BENCHMARK(guidParse);

void guidParse_boost(benchmark::State& state)
{
    const boost::uuids::string_generator parse;
    run(state, [&] { return parse(opaque(s_guidText)); });
}
BENCHMARK(guidParse_boost);

void guidParse_sscanf(benchmark::State& state)
{
    run(state, [] {
        ZGUID guid;
        unsigned char* b = guid.data4;
        std::sscanf(opaque(s_guidText), "{%8x-%4hx-%4hx-%2hhx%2hhx-%2hhx%2hhx%2hhx%2hhx%2hhx%2hhx}",
            &guid.data1, &guid.data2, &guid.data3, b, b + 1, b + 2, b + 3, b + 4, b + 5, b + 6, b + 7);
        return guid;
    });
}
BENCHMARK(guidParse_sscanf);

// Numbers to text

constexpr int s_number = -1234567;

void numberText_Value(benchmark::State& state)
{
    const Value value(std::in_place, s_number);
    run(state, [&] { return value.toCString(); });
}
BENCHMARK(numberText_Value);

void numberText_ValueAppended(benchmark::State& state)
{
    const Value value(std::in_place, s_number);
    ZMStr<char> line(100);
    run(state, [&] {
        line.remove(0);
        value.appendTo(line);
        return line.Length();
    });
}
BENCHMARK(numberText_ValueAppended);

void numberText_snprintf(benchmark::State& state)
{
    run(state, [] {
        char text[16];
        const int length = std::snprintf(text, sizeof text, "%d", opaque(s_number));
        benchmark::DoNotOptimize(text);
        return length;
    });
}
BENCHMARK(numberText_snprintf);

void numberText_to_chars(benchmark::State& state)
{
    run(state, [] {
        char text[16];
        char* end = std::to_chars(std::begin(text), std::end(text), opaque(s_number)).ptr;
        benchmark::DoNotOptimize(text);
        return end;
    });
}
BENCHMARK(numberText_to_chars);

void numberText_fmtCompiled(benchmark::State& state)
{
    run(state, [] { return fmt::format(FMT_COMPILE("{}"), opaque(s_number)); });
}
BENCHMARK(numberText_fmtCompiled);

void numberText_absl(benchmark::State& state)
{
    run(state, [] { return absl::StrCat(opaque(s_number)); });
}
BENCHMARK(numberText_absl);

// Allocating and freeing a value, as a log record does for each argument

void valueOfInt_Value(benchmark::State& state)
{
    run(state, [] { return std::make_unique<Value>(std::in_place, opaque(s_number)); });
}
BENCHMARK(valueOfInt_Value);

void valueOfInt_any(benchmark::State& state)
{
    run(state, [] { return std::make_unique<std::any>(opaque(s_number)); });
}
BENCHMARK(valueOfInt_any);

void valueOfText_Value(benchmark::State& state)
{
    const ZGStr<char> text("the text of a log line that is neither short nor long");
    run(state, [&] { return std::make_unique<Value>(text); });
}
BENCHMARK(valueOfText_Value);

void valueOfText_any(benchmark::State& state)
{
    const std::string text("the text of a log line that is neither short nor long");
    run(state, [&] { return std::make_unique<std::any>(text); });
}
BENCHMARK(valueOfText_any);

// A log line: time, string, number, number, GUID

void line_Values(benchmark::State& state)
{
    const Value values[]{Value(std::in_place, static_cast<const char*>("Connection")),
        Value(std::in_place, 42), Value(std::in_place, 2.5), Value(std::in_place, s_guid)};
    ZMStr<char> line(300);
    run(state, [&] {
        line.remove(0);
        char time[ZTime::s_textCapacity];
        line.append(time, s_time.writeTextEx(time));
        for (const Value& value : values) {
            line.append('\t');
            value.appendTo(line);
        }
        return line.Length();
    });
}
BENCHMARK(line_Values);

void line_ValuesAsStrings(benchmark::State& state)
{
    const Value values[]{Value(std::in_place, static_cast<const char*>("Connection")),
        Value(std::in_place, 42), Value(std::in_place, 2.5), Value(std::in_place, s_guid)};
    ZMStr<char> line(300);
    run(state, [&] {
        line.remove(0);
        line << s_time.toCStringEx();
        for (const Value& value : values)
            line << '\t' << value.toCString();
        return line.Length();
    });
}
BENCHMARK(line_ValuesAsStrings);

void line_snprintf(benchmark::State& state)
{
    run(state, [] {
        char line[300];
        const unsigned char* b = s_guid.data4;
        const int length = std::snprintf(line, sizeof line,
            "%04d-%02d-%02dT%02d:%02d:%02d.%03d\t%s\t%d\t%g\t{%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%"
            "02x}",
            s_time.Year(), s_time.Month(), s_time.Day(), s_time.Hour(), s_time.Minute(), s_time.Second(),
            s_time.MilliSeconds(), "Connection", 42, 2.5, s_guid.data1, s_guid.data2, s_guid.data3, b[0],
            b[1], b[2], b[3], b[4], b[5], b[6], b[7]);
        benchmark::DoNotOptimize(line);
        return length;
    });
}
BENCHMARK(line_snprintf);

} // namespace
