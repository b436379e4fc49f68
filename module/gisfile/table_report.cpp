#include <algorithm>
#include <chrono>

#include "module/exchange/dbf_file.h"
#include "module/gisfile/report.h"
#include "platform/files/byte_order.h"
#include "platform/text/text.h"

namespace norvane {

namespace {

const char* nameOf(DbfFieldClass type) {
    switch (type) {
        case kDbfInteger:
            return "whole number";
        case kDbfDouble:
            return "number";
        case kDbfDate:
            return "date";
        default:
            return "text";
    }
}

std::string fieldName(const DbfHandle* table, int32_t field) {
    std::string name;
    DbfGetFieldInfo(table, field, &name, nullptr, nullptr);
    return name;
}

void describeFields(Report& report, const DbfHandle* table) {
    for (int32_t f = 0; f < DbfGetFieldCount(table); ++f) {
        std::string name;
        int32_t width = 0, decimals = 0;
        DbfFieldClass type = DbfGetFieldInfo(table, f, &name, &width, &decimals);
        report.say(text::format("  field %-11s %c %d.%d (%s)", name.c_str(),
                                table->fieldTypes[static_cast<size_t>(f)], width, decimals, nameOf(type)));
    }
}

// Numbers may be missing: blank, or asterisks.
bool isNumber(std::string_view value) {
    if (value.find_first_not_of('*') == std::string_view::npos) return true;
    bool isWord = value.find_first_not_of("0123456789+-.eE") != std::string_view::npos;
    return !isWord && text::wholeReal(value).has_value();
}

// Dates are YYYYMMDD. They may be missing: blank, or zeros.
bool isDate(std::string_view value) {
    if (value.find_first_not_of('0') == std::string_view::npos) return true;
    if (value.size() != 8 || value.find_first_not_of("0123456789") != std::string_view::npos) return false;
    auto number = [&](size_t at, size_t count) { return text::toLong(std::string(value.substr(at, count))); };
    return std::chrono::year_month_day(std::chrono::year(static_cast<int>(number(0, 4))),
                                       std::chrono::month(static_cast<unsigned>(number(4, 2))),
                                       std::chrono::day(static_cast<unsigned>(number(6, 2))))
        .ok();
}

bool isDeleted(const DbfHandle* table, int32_t record) {
    const char* mark = table->file->view(table->headerLength + int64_t{record} * table->recordLength, 1);
    return mark && *mark == '*';
}

void checkRecord(Report& report, DbfHandle* table, int32_t record) {
    for (int32_t f = 0; f < DbfGetFieldCount(table); ++f) {
        const char* value = DbfReadStringAttribute(table, record, f);
        if (!value) return report.fault(text::format("record %d cannot be read", record));
        DbfFieldClass type = DbfGetFieldInfo(table, f, nullptr, nullptr, nullptr);
        const char* wanted = type == kDbfDate && !isDate(value)                                ? "date"
                             : (type == kDbfInteger || type == kDbfDouble) && !isNumber(value) ? "number"
                                                                                               : nullptr;
        if (wanted)
            report.fault(text::format("record %d: %s holds \"%s\", which is no %s", record,
                                      fieldName(table, f).c_str(), value, wanted));
    }
}

void checkSizes(Report& report, const DbfHandle* table) {
    int32_t length = 1;
    for (int32_t size : table->fieldSizes) length += size;
    if (length != table->recordLength)
        report.fault(text::format("the fields take %d bytes of records of %d", length, table->recordLength));
    const char* told = table->file->view(4, 4);
    long count = told ? files::getLittle<int32_t>(told) : 0;
    if (count != table->recordCount)
        report.fault(
            text::format("the header tells of %ld records, %d are there", count, table->recordCount));
}

}  // namespace

bool ReportTable(Report& report, const ReportOptions& options) {
    OpenDbfFile table(DbfOpen(report.path(), "rb"));
    if (!table) return false;
    int32_t records = DbfGetRecordCount(table.get());
    report.say(text::format("%s: dBASE table, %d fields, %d records of %d bytes", report.path().c_str(),
                            DbfGetFieldCount(table.get()), records, table->recordLength));
    describeFields(report, table.get());
    if (options.check) checkSizes(report, table.get());
    for (int32_t i = 0; i < std::min<long>(options.records, records); ++i) {
        std::string line = text::format("  record %d%s:", i, isDeleted(table.get(), i) ? " (deleted)" : "");
        for (int32_t f = 0; f < DbfGetFieldCount(table.get()); ++f) {
            const char* value = DbfReadStringAttribute(table.get(), i, f);
            line += (f ? " | " : " ") + std::string(value ? value : "?");
        }
        report.say(line);
    }
    int32_t deleted = 0;
    for (int32_t i = 0; options.check && i < records; ++i) {
        checkRecord(report, table.get(), i);
        if (isDeleted(table.get(), i)) ++deleted;
    }
    if (deleted > 0) report.say(text::format("  %d of the records are marked as deleted", deleted));
    return true;
}

}  // namespace norvane
