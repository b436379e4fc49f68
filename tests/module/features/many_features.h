// Templates with features to print and to send.
#pragma once

#include <string>

#include "platform/dao/dao.h"
#include "tests/module/features/editor_fixture.h"

class ManyFeatures : public Editor {
  protected:
    // Adds an attribute to a feature; texts without a letter stay without a value.
    static void addAttribute(CDaoDatabase& database, const std::string& feature, const std::string& field,
                             const std::string& prompt, const std::string& value = "",
                             const std::string& list = "") {
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "SELECT * FROM ZGEO_SMART_PROMPTING");
        rows.AddNew();
        rows.SetFieldValue("GIS_NAME", feature);
        if (!field.empty()) rows.SetFieldValue("FIELD_NAME", field);
        if (!prompt.empty()) rows.SetFieldValue("FIELD_PROMPT", prompt);
        if (!value.empty()) rows.SetFieldValue("DEFAULT_VALUE", value);
        if (!list.empty()) rows.SetFieldValue("LIST_VALUES", list);
        rows.Update();
    }
    static void addToCategory(CDaoDatabase& database, const std::string& category,
                              const std::string& feature) {
        CDaoRecordset rows(&database);
        rows.Open(dbOpenDynaset, "SELECT * FROM ZGEO_CAT");
        rows.AddNew();
        rows.SetFieldValue("INDEX_CAT_GIS", 1);
        rows.SetFieldValue("CAT_GIS_NAME", category);
        rows.SetFieldValue("GIS_NAME", feature);
        rows.Update();
    }
    // A template at path("t.mdb") with what `fill` puts into it.
    template <class Fill>
    void templateOf(Fill fill) {
        newTemplate();
        CDaoDatabase database;
        database.Open(path("t.mdb"));
        database.BeginTrans();
        fill(database);
        database.CommitTrans();
        database.Close();
        ui_.clearLog();
    }
    // TREE stands in two categories, GATE and BUSH in one, and one has none.
    void smallTemplate() {
        templateOf([](CDaoDatabase& database) {
            addAttribute(database, "TREE", "~SPECIES", "Species", "ASH", "OAK,ASH");
            addAttribute(database, "TREE", "..DBH", "Diameter");
            addAttribute(database, "BUSH", ".HEIGHT", "Height");
            addAttribute(database, "GATE", "OWNER", "Owner", "CITY");
            for (const char* category : {"ROADS", "PLANTS", "EMPTY"})
                addToCategory(database, category, "NO_GIS");
            addToCategory(database, "ROADS", "TREE");
            addToCategory(database, "PLANTS", "TREE");
            addToCategory(database, "PLANTS", "BUSH");
            addToCategory(database, "FENCES", "GATE");
        });
    }
    // F000, F001, ... in ten categories, with three attributes each, that take 12 rows of the sheet.
    void manyFeatures(int count) {
        templateOf([&](CDaoDatabase& database) {
            for (int i = 0; i < count; ++i) {
                const std::string number = std::to_string(i),
                                  name = "F" + std::string(3 - number.size(), '0') + number;
                addAttribute(database, name, "~COLOUR", "Colour", "RED " + number, "GREEN,BLUE");
                addAttribute(database, name, "..DEPTH", "Depth");
                addAttribute(database, name, ".GATES", "Gates", "1", "1,2");
                addToCategory(database, "C" + std::to_string(i % 10), name);
            }
        });
    }
};
