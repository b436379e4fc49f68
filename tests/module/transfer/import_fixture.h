// Imports of shape files through function code 11, with a template and an output of their own.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "module/exchange/dbf_file.h"
#include "module/exchange/shape_file.h"
#include "tests/module/module_fixture.h"

class ImportTest : public ModuleTest {
  protected:
    void SetUp() override;

    // Makes a set in the test's folder; its shapes have one part. Cells are texts, written as the field wants
    // them.
    struct Field {
        std::string name;
        norvane::DbfFieldClass type = norvane::kDbfString;
        int width = 20;
        int decimals = 0;
    };
    struct Record {
        std::vector<std::array<double, 3>> vertices;
        std::vector<std::string> cells;
    };
    void makeSet(const std::string& name, int32_t type, const std::vector<Field>& fields,
                 const std::vector<Record>& records) const;
    // Copies a set of the shared files here. False when there is none.
    bool takeSharedSet(const std::string& name) const;

    // Code 11 with steps behind the choice of a set; its result as Lisp prints it.
    std::string import(const std::string& set, std::vector<ui::Step> steps = {});
    static ui::Step text(std::string control, std::string text) {
        return {ui::Step::Kind::Text, std::move(control), std::move(text)};
    }
    static ui::Step check(std::string control, bool on = true) {
        return {ui::Step::Kind::Check, std::move(control), "", on};
    }
    static ui::Step import();

    // What SQL says of the output.
    std::string output(const std::string& sql) const { return sqlite("output.mdb", sql); }
    // The points of a coordinate file: "name northing easting elevation description" each.
    std::vector<std::string> points(const std::string& file) const;
    // Entities of a type in the drawing.
    int count(const std::string& type);
};
