#include "tests/module/transfer/table_fixture.h"

#include <deque>

#include "platform/text/text.h"

namespace {

CDaoFieldInfo field(const std::string& name, int type, long size = 0) {
    CDaoFieldInfo info;
    info.name = name;
    info.type = type;
    info.size = size;
    info.allowZeroLength = name != "CODE";
    return info;
}

int versionOf(const std::string& file) {
    return file.find("97") != std::string::npos ? dbVersion30 : dbVersion40;
}

}  // namespace

void TableTest::makePoles(const std::string& file) const {
    CDaoDatabase database;
    database.Create(path(file), dbLangGeneral, versionOf(file));
    CDaoTableDef table(&database);
    table.Create("POLES");
    table.CreateField(field("HEIGHT", dbDouble));
    table.CreateField("ID", dbLong, 4, dbAutoIncrField);
    table.CreateField(field("PT_ID", dbText, 255));
    table.CreateField(field("LIT", dbBoolean));
    table.CreateField(field("FLOORS", dbInteger));
    table.CreateField(field("NUMBER", dbLong));
    table.CreateField(field("RATE", dbSingle));
    table.CreateField(field("SEEN", dbDate));
    table.CreateField(field("DEED", dbMemo));
    table.CreateField(field("CODE", dbText, 10));
    table.CreateField(field("GIS_KEY", dbText, 255));
    table.CreateField(field("SMALL", dbByte));
    table.CreateField(field("TAX", dbCurrency));
    table.CreateField(field("PLAN", dbLongBinary));
    table.Append();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM POLES");
    for (int i = 1; i <= 5; ++i) {
        records.AddNew();
        records.SetFieldValue("PT_ID", "P" + std::to_string(i));
        records.SetFieldValue("GIS_KEY", i == 5 ? dao::Variant("GUYWIRE") : dao::Variant("POLE"));
        if (i != 3) {
            records.SetFieldValue("HEIGHT", i / 3.0);
            records.SetFieldValue("LIT", i % 2 == 0);
            records.SetFieldValue("FLOORS", static_cast<int16_t>(-i));
            records.SetFieldValue("NUMBER", 100000 * i);
            records.SetFieldValue("RATE", 0.1F * static_cast<float>(i));
            records.SetFieldValue("SEEN", dao::Date{38000 + i + (i == 2 ? 0.573263 : 0)});
            records.SetFieldValue("DEED", i == 1 ? std::string(400, 'x') : i == 2 ? "a\r\nb" : "deed");
            records.SetFieldValue("CODE", "  C" + std::to_string(i) + " ");
            records.SetFieldValue("SMALL", uint8_t{200});
            records.SetFieldValue("TAX", dao::Currency{123456});
            records.SetFieldValue("PLAN", dao::Binary(300, 7));
        }
        records.Update();
    }
    records.Close();
    database.Close();
}

void TableTest::makeList(const std::string& file, int count) const {
    CDaoDatabase database;
    database.Create(path(file), dbLangGeneral, versionOf(file));
    CDaoTableDef table(&database);
    table.Create("LIST");
    for (const char* name : {"PT_ID", "GIS_KEY", "NAME"}) table.CreateField(field(name, dbText, 255));
    table.Append();
    database.BeginTrans();
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM LIST");
    for (int i = 1; i <= count; ++i) {
        records.AddNew();
        records.SetFieldValue("PT_ID", std::to_string(i));
        records.SetFieldValue("GIS_KEY", "LIST");
        records.SetFieldValue("NAME", "name " + std::to_string(i % 7));
        records.Update();
    }
    records.Close();
    database.CommitTrans();
    database.Close();
}

std::string TableTest::edit(const std::string& file, const std::string& table, std::vector<ui::Step> steps) {
    answer(kTable, std::move(steps));
    const std::string place = file.starts_with("ODBC;") ? "\"" + file + "\"" : quoted(file);
    return lisp("(gis:edit-table " + place + " \"" + table + "\")");
}

std::string TableTest::editWhile(const std::string& file, const std::string& table,
                                 std::vector<ui::Step> steps, const std::function<void()>& meanwhile,
                                 std::vector<ui::Step> then) {
    std::deque<ui::Step> left(then.begin(), then.end());
    bool isDone = false;
    TableAsker asker([&](const std::string&) -> std::optional<ui::Step> {
        if (!std::exchange(isDone, true)) meanwhile();
        if (left.empty()) return std::nullopt;
        ui::Step step = left.front();
        left.pop_front();
        return step;
    });
    ui_.setAsker(&asker);
    const std::string result = edit(file, table, std::move(steps));
    ui_.setAsker(nullptr);
    EXPECT_TRUE(left.empty());
    return result;
}

std::vector<ui::Step> TableTest::joined(std::vector<std::vector<ui::Step>> parts) {
    std::vector<ui::Step> all;
    for (auto& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

std::vector<std::string> TableTest::pictures() const {
    std::vector<std::string> found;
    for (const std::string& entry : ui_.log())
        if (entry.starts_with("[162]")) found.push_back(entry);
    return found;
}

std::vector<std::string> TableTest::activeCells() const {
    std::vector<std::string> cells;
    for (const std::string& picture : pictures()) {
        const size_t begin = picture.find(", at (") + 6;
        cells.push_back(text::replaceAll(picture.substr(begin, picture.find(')', begin) - begin), ", ", ","));
    }
    return cells;
}

std::string TableTest::lineOf(const std::string& picture, const std::string& begin) {
    for (const std::string& line : text::split(picture, '\n'))
        if (text::trim(line).starts_with(begin)) return std::string(text::trim(line));
    return "";
}

std::string TableTest::words(const std::string& line) {
    std::vector<std::string> found;
    for (const std::string& word : text::split(line, ' '))
        if (!word.empty()) found.push_back(word);
    return text::join(found, " ");
}

std::vector<dao::Variant> TableTest::record(const std::string& file, const std::string& id) const {
    CDaoDatabase database;
    database.Open(path(file));
    CDaoRecordset records(&database);
    records.Open(dbOpenDynaset, "SELECT * FROM POLES WHERE PT_ID = '" + id + "'");
    std::vector<dao::Variant> values;
    for (int i = 0; i < records.GetFieldCount(); ++i) values.push_back(records.GetFieldValue(i));
    return values;
}

std::string TableTest::stateOf(const std::string& picture) {
    const std::string line = lineOf(picture, "1910 label \"");
    return line.size() < 13 ? "" : line.substr(12, line.size() - 13);
}

std::vector<std::string> TableTest::boxes() const {
    std::vector<std::string> found;
    for (const std::string& entry : ui_.log())
        if (entry.starts_with("box [")) found.push_back(entry.substr(0, entry.find(" flags")));
    return found;
}
