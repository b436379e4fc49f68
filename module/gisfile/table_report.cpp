#include <algorithm>

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
    return text::wholeReal(value).has_value();
}

void checkRecord(Report& report, DbfHandle* table, int32_t record) {
    for (int32_t f = 0; f < DbfGetFieldCount(table); ++f) {
        const char* value = DbfReadStringAttribute(table, record, f);
        DbfFieldClass type = DbfGetFieldInfo(table, f, nullptr, nullptr, nullptr);
        if (!value)
            report.fault(text::format("record %d cannot be read", record));
        else if ((type == kDbfInteger || type == kDbfDouble) && !isNumber(value))
            report.fault(text::format("record %d: %s holds \"%s\", which is no number", record,
                                      fieldName(table, f).c_str(), value));
        if (!value) return;
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
        std::string line = text::format("  record %d:", i);
        for (int32_t f = 0; f < DbfGetFieldCount(table.get()); ++f) {
            const char* value = DbfReadStringAttribute(table.get(), i, f);
            line += (f ? " | " : " ") + std::string(value ? value : "?");
        }
        report.say(line);
    }
    for (int32_t i = 0; options.check && i < records; ++i) checkRecord(report, table.get(), i);
    return true;
}

}  // namespace norvane
