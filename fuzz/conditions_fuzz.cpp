// Conditions and labels with any text at all. A fault lies within the text; what is a condition finds the
// same records in a file of each engine as by itself, and is written for servers with as many signs as
// values.
#include <algorithm>

#include "fuzz/fuzz_folder.h"
#include "module/conditions/condition.h"
#include "module/conditions/condition_parser.h"
#include "module/conditions/condition_search.h"
#include "module/conditions/expression.h"
#include "module/conditions/offers.h"
#include "platform/text/text.h"

using namespace norvane;

namespace {

struct Table {
    CDaoDatabase database;
    std::vector<CDaoFieldInfo> fields;
    std::vector<std::vector<dao::Variant>> records;

    explicit Table(const std::string& file) {
        database.Create(fuzzFile(file));
        CDaoTableDef definition(&database);
        definition.Create("T");
        const std::pair<const char*, int> kFields[] = {
            {"ID", dbLong},  {"A", dbText},       {"NOTE", dbMemo},      {"N", dbLong},
            {"X", dbDouble}, {"R", dbSingle},     {"P", dbCurrency},     {"B", dbBoolean},
            {"D", dbDate},   {"pole no", dbText}, {"DATA", dbLongBinary}};
        for (const auto& [name, type] : kFields) {
            CDaoFieldInfo field;
            field.name = name;
            field.type = type;
            field.size = type == dbText ? 50 : 0;
            field.allowZeroLength = true;
            definition.CreateField(field);
        }
        definition.Append();
        CDaoRecordset set(&database);
        set.Open(dbOpenDynaset, "T");
        for (int i = 0; i < 12; ++i) add(set, i);
        set.MoveFirst();
        fields.resize(static_cast<size_t>(set.GetFieldCount()));
        for (size_t f = 0; f < fields.size(); ++f) set.GetFieldInfo(static_cast<int>(f), fields[f]);
        for (; !set.IsEOF(); set.MoveNext()) records.push_back(valuesOf(set));
        database.CommitTrans();
    }

    std::vector<dao::Variant> valuesOf(CDaoRecordset& set) const {
        std::vector<dao::Variant> values;
        for (int f = 0; f < set.GetFieldCount(); ++f) values.push_back(set.GetFieldValue(f));
        return values;
    }

  private:
    void add(CDaoRecordset& set, int i) {
        static const char* const kTexts[] = {"oak",   "OAK ", "",    "o*k", "a[b", "línea",
                                             "LÍNEA", "ıſ",   "100", "20%", "𝄞",   "it's"};
        static const double kNumbers[] = {0, 1, -1, 0.1, 12.5, 100, 2147483647, -0.5, 1e-3, 5, 20, 7};
        if (i == 0) database.BeginTrans();
        set.AddNew();
        set.SetFieldValue("ID", int32_t{i});
        if (i > 0) {
            set.SetFieldValue("A", kTexts[i]);
            set.SetFieldValue("NOTE", kTexts[(i * 5) % 12]);
            set.SetFieldValue("N", static_cast<int32_t>(kNumbers[i]));
            set.SetFieldValue("X", kNumbers[(i + 3) % 12]);
            set.SetFieldValue("R", kNumbers[i]);
            set.SetFieldValue("P", kNumbers[i] / 8);
            set.SetFieldValue("B", i % 3 == 0);
            set.SetFieldValue("D", dao::Date{38000 + i / 4.0});
            set.SetFieldValue("pole no", kTexts[11 - i]);
        }
        set.Update();
    }
};

void compare(Table& table, std::string_view text) {
    ConditionFault fault;
    const std::optional<Condition> condition = Condition::read(text, table.fields, fault);
    if (!condition) {
        require(fault.place <= text.size() && fault.length <= text.size() - fault.place,
                "a fault outside of the text");
        require(!fault.sentence.empty() && text::isValidUtf8(fault.sentence), "a fault without a sentence");
        return;
    }
    std::vector<int> held, found;
    for (const std::vector<dao::Variant>& values : table.records)
        if (condition->holds(values)) held.push_back(values[0].get<int32_t>());
    const ConditionSearch search = condition->where(table.database);
    require(search.isExact, "a search in a file is exact");
    CDaoRecordset set(&table.database);
    for (set.Open(dbOpenDynaset, "SELECT ID FROM T WHERE " + search.where, 0, search.parameters);
         !set.IsEOF(); set.MoveNext())
        found.push_back(set.GetFieldValue(0).get<int32_t>());
    std::sort(found.begin(), found.end());
    require(found == held, "the engine finds other records");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Table inSqlite("fuzz.sqlite"), inAccess("fuzz.mdb");
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    compare(inSqlite, text);
    compare(inAccess, text);

    ConditionFault fault;
    if (Condition::read(text, inSqlite.fields, fault)) {
        ConditionTokens tokens(text);
        const ConditionNode root = ConditionParser(tokens, inSqlite.fields).condition();
        for (dao::EngineKind engine : {dao::EngineKind::kPostgres, dao::EngineKind::kOtherServer}) {
            const ConditionSearch search = SearchFor(root, inSqlite.fields, engine);
            const auto signs = std::count(search.where.begin(), search.where.end(), '?');
            require(static_cast<size_t>(signs) == search.parameters.size(), "signs without values");
        }
    }
    if (const auto expression = Expression::read(text, inSqlite.fields, fault))
        for (const std::vector<dao::Variant>& values : inSqlite.records)
            require(text::isValidUtf8(expression->textOf(values)), "a label that is no text");
    for (OffersFor what : {OffersFor::kCondition, OffersFor::kExpression}) {
        const Offers offers = OffersAt(text, size, inSqlite.fields, what);
        require(offers.begin + offers.length == size, "offers for another place");
    }
    return 0;
}
