// A template with the feature TREE, and tables of trees whose records are changed and erased.
#pragma once

#include <string>
#include <vector>

#include "module/records/record_edits.h"
#include "module/store/template_database.h"
#include "tests/module/module_fixture.h"
#include "tests/platform/dao/scratch.h"

class RecordsTest : public ModuleTest {
  protected:
    using RecordEdits = norvane::RecordEdits;
    using RecordValues = norvane::RecordValues;
    using EditOutcome = norvane::EditOutcome;

    // TREE: a list that has to be set, a list, numbers, what is computed from rows and from the point.
    void makeRules() const {
        ASSERT_TRUE(
            norvane::CreateTemplateDatabase(path("rules.mdb"), norvane::DatabaseVersion::kAccess2000));
        CDaoDatabase database;
        database.Open(path("rules.mdb"));
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "SELECT * FROM ZGEO_SMART_PROMPTING");
        const char* const kRows[][4] = {
            {"~SPECIES", "Species", "", "Oak,Beech"},
            {"STATE", "State", "", "good,poor"},
            {"~..HEIGHT", "Height", "", ""},
            {".STEMS", "Stems", "", ""},
            {"..VOLUME", "Volume", "$EQN=HEIGHT*STEMS", "x"},
            {"..TWICE", "Twice", "$EQN=VOLUME*2", "x"},
            {"..NORTHING", "Northing", "$EQN=$NOR", "x"},
            {"NOTE", "Note", "", ""},
            {"DESCRIPTION", "Description", "$EQN=$DSC", "x"},
        };
        for (const auto& row : kRows) {
            rows.AddNew();
            rows.SetFieldValue("GIS_NAME", "TREE");
            const char* const kFields[] = {"FIELD_NAME", "FIELD_PROMPT", "DEFAULT_VALUE", "LIST_VALUES"};
            for (int i = 0; i < 4; ++i) rows.SetFieldValue(kFields[i], row[i]);
            rows.Update();
        }
    }

    // Records 1 to 3 of TREE, and one of BUSH, which the template does not know.
    void makeTrees(const std::string& file) const {
        CDaoDatabase database;
        database.Create(path(file), dbLangGeneral,
                        file.find("97") != std::string::npos ? dbVersion30 : dbVersion40);
        CDaoTableDef table(&database);
        table.Create("TREES");
        for (const char* name : {"PT_ID", "GIS_KEY", "SPECIES", "STATE", "NOTE", "DESCRIPTION"})
            table.CreateField(name, dbText, 60);
        for (const char* name : {"HEIGHT", "VOLUME", "TWICE", "NORTHING"})
            table.CreateField(name, dbDouble, 8);
        table.CreateField("STEMS", dbLong, 4);
        table.CreateField("SEEN", dbDate, 8);
        table.CreateField("DEED", dbMemo, 0);
        table.CreateField("LIT", dbBoolean, 1);
        table.CreateField("RATE", dbSingle, 4);
        table.CreateField("NR", dbLong, 4, dbAutoIncrField);
        table.Append();
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "SELECT * FROM TREES");
        for (int i = 1; i <= 4; ++i) {
            records.AddNew();
            records.SetFieldValue("PT_ID", std::to_string(i));
            records.SetFieldValue("GIS_KEY", i < 4 ? "TREE" : "BUSH");
            records.SetFieldValue("SPECIES", "Oak");
            records.SetFieldValue("HEIGHT", i + 0.5);
            records.SetFieldValue("STEMS", 2);
            records.SetFieldValue("VOLUME", 2 * (i + 0.5));
            records.SetFieldValue("NORTHING", 1000.25 * i);
            records.SetFieldValue("SEEN", dao::Date{38138.573263});
            records.SetFieldValue("DEED", i == 2 ? "two\r\nlines" : "deed");
            records.SetFieldValue("LIT", true);
            records.SetFieldValue("RATE", 0.1F);
            records.Update();
        }
    }

    static RecordValues readRecord(CDaoDatabase& database, const std::string& table,
                                   const std::string& where) {
        CDaoRecordset records(&database);
        records.Open(dbOpenDynaset, "SELECT * FROM " + table + " WHERE " + where);
        RecordValues values;
        for (int i = 0; !records.IsEOF() && i < records.GetFieldCount(); ++i)
            values.push_back(records.GetFieldValue(i));
        return values;
    }

    // Types into a field by its name; the fault.
    static std::string type(RecordEdits& edits, const std::string& field, const std::string& text) {
        return edits.type(static_cast<size_t>(edits.fieldNamed(field)), text);
    }
    static std::string valueOf(const RecordEdits& edits, const RecordValues& record,
                               const std::string& field) {
        return edits.rules().text(record, static_cast<size_t>(edits.fieldNamed(field)));
    }
};
