// Tables of every kind as the links of title blocks read them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>

#include "module/titleblocks/database_source.h"
#include "module/titleblocks/link_format.h"
#include "module/titleblocks/record_source.h"
#include "module/titleblocks/value_table.h"
#include "platform/dao/dao.h"
#include "platform/files/byte_order.h"
#include "platform/files/files.h"
#include "platform/text/text.h"
#include "tests/platform/dao/scratch.h"

using namespace norvane;

namespace {

class Sources : public testing::Test {
  protected:
    // What the driver manager knows. It reads that once in a process.
    static ScratchFolder& drivers() {
        static ScratchFolder folder;
        return folder;
    }
    static void SetUpTestSuite() {
        setenv("ODBCSYSINI", drivers().path().c_str(), 1);
        setenv("ODBCINI", drivers()("odbc.ini").c_str(), 1);
        writeFile(drivers()("odbcinst.ini"),
                  "[Microsoft dBase Driver (*.dbf)]\nDriver = /lib/dbf.so\nFileExtns = *.dbf,*.ndx\n"
                  "[Microsoft Excel Driver (*.xls)]\nDriver = /lib/xls.so\nFileExtns = *.txt\n");
    }
    void SetUp() override { setenv("NORVANE_REGISTRY", folder_("registry.ini").c_str(), 1); }

    std::string path(const std::string& name) const { return folder_(name); }
    void write(const std::string& name, const std::string& content) const { writeFile(path(name), content); }

    std::unique_ptr<RecordSource> open(const std::string& file) const {
        return OpenRecordSource(dao::DatabasePath(file));
    }
    // Why a file is refused; "" when it is not.
    std::string refusal(const std::string& file) const {
        try {
            open(file);
            return "";
        } catch (const CDaoException& error) {
            return text::replaceAll(error.description(), folder_.path() + "/", "");
        }
    }
    // Columns and records of a table: "A,B;1,2;3,4".
    std::string all(const std::string& file, const std::string& table) const {
        const std::unique_ptr<RecordSource> source = open(file);
        const std::vector<std::string> columns = source->columns(table);
        std::string text = text::join(columns, ",");
        source->read(table, columns, [&](std::span<const std::string> values) {
            text += ";" + text::join(std::vector<std::string>(values.begin(), values.end()), ",");
            return true;
        });
        return text;
    }
    std::string tables(const std::string& file) const { return text::join(open(file)->tables(), ","); }

    // A dBASE table of any kind: columns as name, type, width, decimals; records with their marks.
    struct Column {
        const char* name;
        char type;
        int width;
        int decimals = 0;
    };
    static std::string dbf(unsigned char version, unsigned char mark, const std::vector<Column>& columns,
                           const std::vector<std::string>& records) {
        std::string head(32, '\0');
        int length = 1;
        for (const Column& column : columns) length += column.width;
        head[0] = static_cast<char>(version);
        files::putLittle(&head[4], static_cast<int32_t>(records.size()));
        files::putLittle(&head[8], static_cast<uint16_t>(33 + 32 * columns.size()));
        files::putLittle(&head[10], static_cast<uint16_t>(length));
        head[29] = static_cast<char>(mark);
        for (const Column& column : columns) {
            std::string descriptor(32, '\0');
            std::strncpy(descriptor.data(), column.name, 10);
            descriptor[11] = column.type;
            descriptor[16] = static_cast<char>(column.width & 0xFF);
            descriptor[17] = static_cast<char>(column.type == 'C' ? column.width >> 8 : column.decimals);
            head += descriptor;
        }
        head += '\r';
        for (const std::string& record : records) head += record;
        return head;
    }
    template <class Number>
    static std::string bytesOf(Number number) {
        std::string bytes(sizeof number, '\0');
        std::memcpy(bytes.data(), &number, sizeof number);
        return bytes;
    }

    ScratchFolder folder_;
};

}  // namespace

TEST_F(Sources, AKindGoesByWhatFollowsTheLastPoint) {
    EXPECT_EQ(KindOfSource("a.mdb.dbf"), SourceKind::kTable);
    EXPECT_EQ(KindOfSource("C:\\x.dbf\\a.XLS"), SourceKind::kWorkbook);
    EXPECT_EQ(KindOfSource("/x.dbf/a"), SourceKind::kNone);
    EXPECT_EQ(KindOfSource("a.txt"), SourceKind::kNone);
    EXPECT_EQ(KindOfSource("ODBC;DSN=x.dbf"), SourceKind::kServer);
    EXPECT_FALSE(IsSourceThere(path("none.dbf")));
    EXPECT_TRUE(IsSourceThere("ODBC;DSN=anything"));
}

TEST_F(Sources, TablesHaveTheirRecordsAndTheirCodePage) {
    const std::vector<Column> columns = {{"Name", 'C', 6}, {"SIZE", 'N', 8, 2}, {"ON", 'D', 8},
                                         {"YES", 'L', 1},  {"MEMO", 'M', 10},   {"PICTURE", 'G', 10}};
    auto record = [&](const std::string& mark, const std::vector<std::string>& values) {
        std::string bytes = mark;
        for (size_t i = 0; i < columns.size(); ++i) {
            const std::string value = i < values.size() ? values[i] : "";
            bytes += value + std::string(static_cast<size_t>(columns[i].width) - value.size(), ' ');
        }
        return bytes;
    };
    const std::vector<std::string> records = {
        record(" ", {"M\x94ller", "   12.50", "20040531", "T", "1", "2"}),
        record("*", {"gone", "1.00", "20040531", "F"}), record(" ", {"none", "", "00000000", "?"}),
        record(" ", {std::string("x \0y", 4), "1.00", "20040531", "n"})};
    write("t.dbf", dbf(0x83, 0x02, columns, records));
    EXPECT_EQ(tables(path("t.dbf")), "T");
    EXPECT_EQ(all(path("t.dbf"), "t"),
              "NAME,SIZE,ON,YES;M\u00F6ller,12.50,2004-05-31,1;none,,,;x,1.00,2004-05-31,0");
    // A file beside says more than the header, and without either it is 1252.
    write("t.cpg", "ANSI 1251");
    EXPECT_NE(all(path("t.dbf"), "T").find("M\u201Dller"), std::string::npos);
    std::filesystem::remove(path("t.cpg"));
    for (const auto& [mark, letter] : std::map<unsigned char, std::string>{
             {0x0A, "\u00EA"}, {0x57, "\u02C6"}, {0x64, "\u0142"}, {0x87, "\u0142"}, {0x26, "\u0418"}}) {
        write("t.dbf", dbf(0x83, mark, columns, {record(" ", {"\x88"})}));
        EXPECT_NE(all(path("t.dbf"), "T").find(";" + letter + ","), std::string::npos) << int{mark};
    }
    write("t.cpg", "CP866");
    EXPECT_NE(all(path("t.dbf"), "T").find(";\u0418,"), std::string::npos);
    std::filesystem::remove(path("t.cpg"));
    write("t.dbf", dbf(0x03, 0x00, columns, {record(" ", {"M\xF6ller"})}));
    EXPECT_NE(all(path("t.dbf"), "T").find("M\u00F6ller"), std::string::npos);
    EXPECT_EQ(all(path("t.dbf"), "OTHER"), "");
}

TEST_F(Sources, TablesOfFoxProHaveNumbersInBytes) {
    const std::string record = " " + bytesOf<int32_t>(-7) + bytesOf<double>(12.5) + bytesOf<int64_t>(136500) +
                               bytesOf<int32_t>(2453157) + bytesOf<int32_t>(49510000) + "text      " +
                               std::string(4, 'x');
    write(
        "f.dbf",
        dbf(0x30, 0x03,
            {{"I", 'I', 4}, {"B", 'B', 8, 2}, {"Y", 'Y', 8, 4}, {"T", 'T', 8}, {"C", 'C', 10}, {"M", 'M', 4}},
            {record}));
    EXPECT_EQ(all(path("f.dbf"), "F"), "I,B,Y,T,C;-7,12.5,13.65,2004-05-31 13:45:10,text");
}

TEST_F(Sources, TablesThatCannotBeReadSaySo) {
    write("text.dbf", "no table");
    EXPECT_EQ(refusal(path("text.dbf")), "The file \"text.dbf\" is no dBASE table.");
    write("empty.dbf", "");
    EXPECT_EQ(refusal(path("empty.dbf")), "The file \"empty.dbf\" is no dBASE table.");
    write("seven.dbf", dbf(0x04, 0, {{"A", 'C', 4}}, {" abcd"}));
    EXPECT_EQ(refusal(path("seven.dbf")), "The table \"seven.dbf\" is of dBASE 7, which is not read.");
    std::string secret = dbf(0x03, 0, {{"A", 'C', 4}}, {" abcd"});
    secret[15] = 1;
    write("secret.dbf", secret);
    EXPECT_EQ(refusal(path("secret.dbf")), "The table \"secret.dbf\" is encrypted.");
    // Of one that is cut the whole records count.
    const std::string whole = dbf(0x03, 0, {{"A", 'C', 4}, {"B", 'C', 4}}, {" abcdefgh", " ijklmnop"});
    write("cut.dbf", whole.substr(0, whole.size() - 3));
    EXPECT_EQ(all(path("cut.dbf"), "CUT"), "A,B;abcd,efgh");
    write("bare.dbf", dbf(0x03, 0, {}, {}));
    EXPECT_EQ(all(path("bare.dbf"), "BARE"), "");
}

TEST_F(Sources, DelimitedTextIsATable) {
    write("a.csv",
          "\xEF\xBB\xBFId,Name,,name,\"Two, words\"\r\n1, One ,x,y,\"a "
          "\"\"b\"\"\nc\"\r\n,,,,\r\n2\r\n3,\"open");
    EXPECT_EQ(tables(path("a.csv")), "A");
    EXPECT_EQ(all(path("a.csv"), "A"), "ID,NAME,F3,TWO, WORDS;1,One,x,a \"b\"\nc;2,,,;3,open,,");
    write("b.csv", "K;V,1;W\n1;2,5;M\xFCller\n");
    EXPECT_EQ(all(path("b.csv"), "B"), "K,V,1,W;1,2,5,M\u00FCller");
    write("c.csv", "one\n");
    EXPECT_EQ(all(path("c.csv"), "C"), "ONE");
    write("d.csv", std::string("a\0b", 3));
    EXPECT_EQ(refusal(path("d.csv")), "The file \"d.csv\" is no text.");
    // The letters of a heading hang on what is far behind it, and a heading may be long.
    const std::string line = std::string(1000, 'x') + "\n";
    std::string lines;
    while (lines.size() < 100000) lines += line;
    for (const char* last : {"\xC3\xBC\n", "\xFC\n"}) {
        write("f.csv", "K\xC3\xBC\n" + lines + last);
        const std::string name = text::isValidUtf8(last) ? "K\u00DC" : "K\u00C3\u00BC";
        EXPECT_EQ(open(path("f.csv"))->columns("F").at(0), name);
        EXPECT_TRUE(all(path("f.csv"), "F").ends_with(";\u00FC"));
    }
    write("g.csv", "K," + std::string(70000, 'X') + ",L\n1,2,3\n");
    EXPECT_EQ(open(path("g.csv"))->columns("G").size(), 3u);
    // What is no text far behind is told when it is read.
    write("h.csv", "K\n" + lines + std::string(1, '\0'));
    EXPECT_EQ(open(path("h.csv"))->columns("H").size(), 1u);
    EXPECT_THROW(all(path("h.csv"), "H"), CDaoException);
    write("e.csv", "");
    EXPECT_EQ(all(path("e.csv"), "E"), "");
}

TEST_F(Sources, DatabasesOfEveryKindAreRead) {
    for (const char* name : {"a.mdb", "a.sqlite", "a.gpkg"}) {
        SCOPED_TRACE(name);
        {
            CDaoDatabase database;
            database.Create(path(name));
            CDaoTableDef table(&database);
            table.Create("Jobs");
            table.CreateField("Id", dbLong, 4);
            table.CreateField("Small", dbInteger, 2);
            table.CreateField("Size", dbDouble, 8);
            table.CreateField("Note", dbText, 50);
            table.CreateField("Picture", dbLongBinary, 0);
            table.Append();
            CDaoRecordset records(&database);
            records.Open(dbOpenDynaset, "SELECT * FROM [Jobs]");
            records.AddNew();
            records.SetFieldValue("Id", dao::Variant(int32_t{1042}));
            records.SetFieldValue("Small", dao::Variant(int16_t{-3}));
            records.SetFieldValue("Size", dao::Variant(12.5));
            records.SetFieldValue("Note", " as it is ");
            records.Update();
            records.AddNew();
            records.SetFieldValue("Id", dao::Variant(int32_t{2}));
            records.Update();
        }
        EXPECT_EQ(tables(path(name)), "JOBS");
        EXPECT_EQ(all(path(name), "JOBS"), "ID,SMALL,SIZE,NOTE;1042,-3,12.500000, as it is ;2,,,");
        EXPECT_EQ(all(path(name), "NONE"), "");
    }
}

TEST_F(Sources, TheFirstRecordOfAKeyCounts) {
    write("t.csv", "K,L,V\n1,a,one\n,b,none\n1,a,two\n2,c,\n2,d,late\n");
    ValueTable table;
    for (const char* key : {"K", "L", "GONE"}) table.want(key, "V");
    table.want("K", "GONE");
    EXPECT_TRUE(table.read(*open(path("t.csv")), "T", [](long) { return true; }));
    auto found = [&](const char* key, const char* value, const char* field) {
        return std::string(table.find(key, value, field).value_or("-"));
    };
    EXPECT_EQ(found("K", "1", "V"), "one");
    EXPECT_EQ(found("K", "2", "V"), "") << "also when it is empty";
    EXPECT_EQ(found("L", "d", "V"), "late");
    EXPECT_EQ(found("L", "b", "V"), "none");
    EXPECT_EQ(found("K", "", "V"), "-");
    EXPECT_EQ(found("K", "A", "V"), "-");
    EXPECT_EQ(found("K", "1", "GONE"), "-") << "a column that has gone empties nothing";
    EXPECT_EQ(found("GONE", "1", "V"), "-");
    std::string values;
    for (std::string_view value : table.keyValues("L")) values += value;
    EXPECT_EQ(values, "abcd");
    // Where some keys alone are asked for, a record is kept for any of its own.
    TextSet only;
    for (const char* key : {"d", "1", "d"}) only.add(key);
    long seen = 0;
    EXPECT_TRUE(table.read(
        *open(path("t.csv")), "T", [&](long count) { return (seen = count) > 0; }, &only));
    EXPECT_EQ(seen, 5);
    EXPECT_EQ(found("K", "1", "V") + found("L", "a", "V") + found("L", "d", "V"), "oneonelate");
    EXPECT_EQ(found("K", "2", "V"), "late") << "the first of those that are kept";
    EXPECT_EQ(found("L", "b", "V") + found("L", "c", "V"), "--");
    EXPECT_FALSE(table.read(*open(path("t.csv")), "T", [](long records) { return records < 2; }));
}

TEST_F(Sources, ATableMayBeLarge) {
    constexpr int kRecords = 5000;
    std::string lines = "K,V\n";
    for (int i = 0; i < 2 * kRecords; ++i)
        lines += std::to_string(i % kRecords) + "," + std::to_string(i) +
                 (i == 7 ? std::string(100000, 'x') : "") + "\n";
    write("t.csv", lines);
    ValueTable table;
    table.want("K", "V");
    EXPECT_TRUE(table.read(*open(path("t.csv")), "T", [](long) { return true; }));
    for (int i = 0; i < kRecords; ++i) {
        const std::string wanted = std::to_string(i) + (i == 7 ? std::string(100000, 'x') : "");
        ASSERT_EQ(table.find("K", std::to_string(i), "V"), wanted);
    }
    EXPECT_EQ(table.keyValues("K").size(), size_t{kRecords});
}

TEST_F(Sources, ValuesHaveTheirTexts) {
    const std::pair<dao::Variant, const char*> cases[] = {
        {dao::Variant(), ""},
        {dao::Variant(uint8_t{200}), "200"},
        {dao::Variant(1.0F / 3), "0.333333"},
        {dao::Variant(-12.5), "-12.500000"},
        {dao::Variant(dao::Currency{275483300}), "27548.33"},
        {dao::Variant(dao::Currency{-5}), "-0.0005"},
        {dao::Variant(dao::Currency{90071992547409930}), "9007199254740.993"},
        {dao::Variant(true), "-1"},
        {dao::Variant(false), "0"},
        {dao::Variant(dao::Date{38138}), "2004-05-31"},
        {dao::Variant(dao::Date{38138.5}), "2004-05-31 12:00:00"},
        {dao::Variant(dao::Binary{1, 2}), ""},
        {dao::Variant("a\r\nb"), "a\r\nb"},
    };
    for (const auto& [value, expected] : cases) EXPECT_EQ(AttributeTextOf(value), expected);
}

TEST(LinkFormats, TextsTakeTheFormOrStay) {
    const struct {
        const char* code;
        const char* text;
        const char* expected;
    } cases[] = {
        {"", " x ", " x "},
        {"U", "m\u00FCller 5", "M\u00DCLLER 5"},
        {"N2", "12.345678", "12.35"},
        {"N0", " 12.5000 ", "12"},
        {"N2", "12 acres", "12 acres"},
        {"N2", "", ""},
        {"D:DD.MM.YYYY", "2004-05-31", "31.05.2004"},
        {"D:M/D/YY", "2004-05-01 13:45:10", "5/1/04"},
        {"D:MMM D, YYYY", "2004-12-31", "Dec 31, 2004"},
        {"D:DD.MM.YYYY", "31 May", "31 May"},
        {"D:DD.MM.YYYY", "12:30:00", "12:30:00"},
        {"D:DD.MM.YYYY", "", ""},
    };
    for (const auto& one : cases) {
        const std::optional<LinkFormat> format = LinkFormat::FromCode(one.code);
        ASSERT_TRUE(format) << one.code;
        EXPECT_EQ(format->apply(one.text), one.expected) << one.code << " on " << one.text;
        EXPECT_EQ(format->code(), one.code);
    }
    for (const char* code : {"N", "N10", "Nx", "X", "D:", "u"})
        EXPECT_FALSE(LinkFormat::FromCode(code)) << code;
}

TEST_F(Sources, TheSourceOfTheUserFollowsTheFileInHand) {
    const std::string table = dbf(0x03, 0, {{"A", 'C', 4}}, {" abcd"});
    for (const char* folder : {"one", "two"}) {
        std::filesystem::create_directory(path(folder));
        write(std::string(folder) + "/t.dbf", table);
    }

    auto values = [&] {
        std::map<std::string, std::string> all;
        std::string section;
        for (const std::string& raw : text::split(files::read(drivers()("odbc.ini")).value_or(""), '\n')) {
            const std::string line(text::trim(raw));
            if (line.starts_with("["))
                section = line;
            else if (const size_t equals = line.find('='); equals != std::string::npos)
                all[section + text::upper(text::trim(line.substr(0, equals)))] =
                    text::trim(line.substr(equals + 1));
        }
        return all;
    };
    open(path("one/t.dbf"));
    std::map<std::string, std::string> first = values();
    EXPECT_EQ(first["[ODBC Data Sources]ZGEO_CONNECT_DBF"], "Microsoft dBase Driver (*.dbf)");
    EXPECT_EQ(first["[zgeo_connect_dbf]DEFAULTDIR"], path("one"));
    EXPECT_EQ(first["[zgeo_connect_dbf]DRIVER"], "/lib/dbf.so");
    EXPECT_EQ(first["[zgeo_connect_dbf]DRIVERID"], "533");
    EXPECT_EQ(first["[zgeo_connect_dbf]FIL"], "dBase III;");
    EXPECT_EQ(first.count("[zgeo_connect_dbf]DBQ"), 0u);
    EXPECT_EQ(first["[zgeo_connect_dbf\\Engines\\Xbase]DELETED"], "1");
    EXPECT_EQ(first["[zgeo_connect_dbf\\Engines\\Xbase]PAGETIMEOUT"], "600");
    open(path("two/t.dbf"));
    EXPECT_EQ(values()["[zgeo_connect_dbf]DEFAULTDIR"], path("two"));
    write("book.xls", "no workbook");
    EXPECT_NE(refusal(path("book.xls")), "");
    EXPECT_EQ(values().count("[zgeo_connect_xls]DRIVER"), 0u) << "the driver is not for such files";
}
