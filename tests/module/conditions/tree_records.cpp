#include "tests/module/conditions/tree_records.h"

#include <utility>

namespace {

CDaoFieldInfo field(const std::string& name, int type, long size = 0) {
    CDaoFieldInfo info;
    info.name = name;
    info.type = type;
    info.size = size;
    info.allowZeroLength = true;
    return info;
}

template <typename Value>
dao::Variant variantOf(const std::optional<Value>& value) {
    return value ? dao::Variant(*value) : dao::Variant();
}

dao::Variant dateOf(const std::optional<std::string>& seen) {
    dao::Date date;
    if (!seen || !dao::dateFromText(*seen, date)) return {};
    return date;
}

}  // namespace

const std::vector<Tree>& trees() {
    static const std::string kLong(255, 'x');
    static const std::vector<Tree> kTrees = {
        {.id = 1},
        {.id = 2,
         .name = "",
         .note = "",
         .whole = 0,
         .small = 0,
         .tiny = 0,
         .height = 0,
         .ratio = 0.0F,
         .price = 0,
         .seen = "1899-12-30 00:00:00",
         .poleNo = ""},
        {.id = 3,
         .name = "oak",
         .note = "by the road",
         .whole = 1,
         .small = 1,
         .tiny = 1,
         .height = 12.5,
         .ratio = 0.1F,
         .price = 125000,
         .alive = true,
         .seen = "2004-05-31 00:00:00",
         .poleNo = "17"},
        {.id = 4,
         .name = "OAK",
         .note = "BY THE ROAD",
         .whole = -1,
         .small = -1,
         .tiny = 255,
         .height = -12.5,
         .ratio = -0.1F,
         .price = -125000,
         .seen = "2004-05-31 13:45:10",
         .poleNo = "A17"},
        {.id = 5,
         .name = "Oak ",
         .note = "by the road ",
         .whole = 2,
         .height = 12.499999999,
         .ratio = 0.2F,
         .price = 124999,
         .alive = true,
         .seen = "2004-05-31 23:59:59",
         .poleNo = "a17"},
        {.id = 6,
         .name = " oak",
         .whole = 3,
         .height = 12.500000001,
         .ratio = 0.3F,
         .price = 125001,
         .seen = "2004-06-01 00:00:00",
         .poleNo = "100"},
        {.id = 7,
         .name = "oak tree",
         .whole = 10,
         .height = 1e-9,
         .price = 1,
         .alive = true,
         .seen = "2004-05-30 23:59:59",
         .poleNo = "20"},
        {.id = 8,
         .name = "o*k",
         .whole = 9,
         .height = 1e9,
         .ratio = 1e9F,
         .price = 10000000000000,
         .seen = "1899-12-29 18:00:00"},
        {.id = 9, .name = "o?k", .whole = 100, .height = 0.1, .ratio = 16777216.0F},
        {.id = 10,
         .name = "o[k",
         .whole = 2147483647,
         .small = 32767,
         .height = 0.2,
         .seen = "9999-12-31 23:59:58"},
        {.id = 11,
         .name = "o%k",
         .whole = -2147483647,
         .small = -32768,
         .height = 0.30000000000000004,
         .seen = "0100-01-01 00:00:00"},
        {.id = 12, .name = "o_k", .whole = 65536, .height = 0.3, .seen = "2000-02-29 12:00:00"},
        {.id = 13, .name = "o\\k", .whole = 16777217, .height = 16777217, .ratio = 16777216.0F},
        {.id = 14, .name = "50%", .whole = 5, .height = 1.0 / 3, .ratio = 1.0F / 3},
        {.id = 15, .name = "it's", .note = "it's", .whole = 5},
        {.id = 16, .name = "say \"hi\"", .whole = 5, .alive = true},
        {.id = 17, .name = "línea", .note = "la línea", .whole = 6},
        {.id = 18, .name = "LÍNEA", .note = "LA LÍNEA", .whole = 6},
        {.id = 19, .name = "größer"},
        {.id = 20, .name = "GRÖßER"},
        {.id = 21, .name = "GRÖSSER"},
        {.id = 22, .name = "ærø", .poleNo = "Ærø"},
        {.id = 23, .name = "ÆRØ", .poleNo = "ærø 2"},
        {.id = 24, .name = "žižka"},
        {.id = 25, .name = "ŽIŽKA"},
        {.id = 26, .name = "ÿ"},
        {.id = 27, .name = "Ÿ"},
        {.id = 28, .name = "ıstanbul"},  // capitals only where the server says so
        {.id = 29, .name = "ſ"},
        {.id = 30, .name = "αβγ"},
        {.id = 31, .name = "ΑΒΓ"},
        {.id = 32, .name = "𝄞", .note = "a 𝄞 b"},
        {.id = 33, .name = "line 1\r\nline 2", .note = "line 1\r\nline 2"},
        {.id = 34, .name = "a\tb", .note = "tab\there"},
        {.id = 35, .name = "10", .height = 10, .seen = "2004-05-31 13:45:09"},
        {.id = 36, .name = "9", .height = 9, .seen = "2004-05-31 13:45:59"},
        {.id = 37, .name = "' OR 1=1 --", .note = "'; DROP TABLE TREES; --", .hasData = true},
        {.id = 38, .name = kLong, .note = std::string(3000, 'n') + "end"},
        {.id = 39, .name = "^_`{", .height = 123456789.123456789, .price = 999999999999},
        {.id = 40, .name = "café~", .note = "CAFÉ", .alive = true, .seen = "2004-05-31 13:46:00"},
    };
    return kTrees;
}

std::vector<CDaoFieldInfo> treeFields() {
    return {field("ID", dbLong),        field("NAME", dbText, 255), field("NOTE", dbMemo),
            field("WHOLE", dbLong),     field("SMALL", dbInteger),  field("TINY", dbByte),
            field("HEIGHT", dbDouble),  field("RATIO", dbSingle),   field("PRICE", dbCurrency),
            field("ALIVE", dbBoolean),  field("SEEN", dbDate),      field("pole no", dbText, 40),
            field("DATA", dbLongBinary)};
}

void makeTrees(CDaoDatabase& db) {
    CDaoTableDef table(&db);
    table.Create("TREES");
    for (const CDaoFieldInfo& info : treeFields()) table.CreateField(info);
    table.Append();
    CDaoRecordset records(&db);
    records.Open(dbOpenDynaset, "SELECT * FROM [TREES]");
    for (const Tree& tree : trees()) {
        records.AddNew();
        records.SetFieldValue("ID", tree.id);
        records.SetFieldValue("NAME", variantOf(tree.name));
        records.SetFieldValue("NOTE", variantOf(tree.note));
        records.SetFieldValue("WHOLE", variantOf(tree.whole));
        records.SetFieldValue("SMALL", variantOf(tree.small));
        records.SetFieldValue("TINY", variantOf(tree.tiny));
        records.SetFieldValue("HEIGHT", variantOf(tree.height));
        records.SetFieldValue("RATIO", variantOf(tree.ratio));
        if (tree.price) records.SetFieldValue("PRICE", dao::Variant(dao::Currency{*tree.price}));
        records.SetFieldValue("ALIVE", tree.alive);
        records.SetFieldValue("SEEN", dateOf(tree.seen));
        records.SetFieldValue("pole no", variantOf(tree.poleNo));
        if (tree.hasData) records.SetFieldValue("DATA", dao::Binary{0, 1, 2});
        records.Update();
    }
}

std::string inCapitals(std::string text) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 9> kLetters = {{{"í", "Í"},
                                                                                               {"ö", "Ö"},
                                                                                               {"æ", "Æ"},
                                                                                               {"ø", "Ø"},
                                                                                               {"ž", "Ž"},
                                                                                               {"ÿ", "Ÿ"},
                                                                                               {"é", "É"},
                                                                                               {"à", "À"},
                                                                                               {"š", "Š"}}};
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    for (const auto& [small, large] : kLetters)
        for (size_t at = 0; (at = text.find(small, at)) != std::string::npos; at += large.size())
            text.replace(at, small.size(), large);
    return text;
}
